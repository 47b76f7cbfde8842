#include "Sandbox/Calls/Reachability.h"

#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox {

std::int64_t readNetworkState(Database& database) {
  return readSetting(database, "network") == "off" ? 0 : 1;
}

void writeNetworkState(Database& database, std::int64_t state) {
  writeSetting(database, "network", state == 0 ? "off" : "on");
}

std::int64_t Reachability::currentState() const { return store_->readOrNothing(readNetworkState); }

std::int64_t Reachability::setState(std::int64_t state) {
  return store_->write([&](Database& database) {
    const auto before = readNetworkState(database);
    writeNetworkState(database, state);
    return before;
  });
}

}  // namespace hlv::sandbox
