#include "Sandbox/Testing/Reset.h"

#include <string>

#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Calls/Reachability.h"
#include "Sandbox/Faults/FaultTables.h"
#include "Sandbox/Provider/Provider.h"
#include "Sandbox/Store/Clock.h"

namespace hlv::sandbox {

void forgetEverything(Database& database) {
  backend::forgetAll(database);
  provider::forgetAll(database);
  removeAllFaults(database);
  resetSandboxTime(database);
  writeNetworkState(database, 1);
  for (const char* table : {"kept_replies", "firings", "events", "operations"}) {
    database.run(std::string("DELETE FROM ") + table);
  }
}

}  // namespace hlv::sandbox
