#include "Sandbox/Reachability.h"

#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox {
namespace {

std::int64_t readState(Database& database) {
  return readSetting(database, "network") == "off" ? 0 : 1;
}

}  // namespace

std::int64_t Reachability::currentState() const { return store_->readOrNothing(readState); }

std::int64_t Reachability::setState(std::int64_t state) {
  return store_->write([&](Database& database) {
    const auto before = readState(database);
    writeSetting(database, "network", state == 0 ? "off" : "on");
    return before;
  });
}

}  // namespace hlv::sandbox
