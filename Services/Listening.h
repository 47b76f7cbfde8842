// Where services listen, and what one request may take of them.
#pragma once

#include <string>

#include "Services/ServiceLimits.h"

namespace hlv::services {

struct Listening {
  std::string address = "127.0.0.1";
  /// Any other address is refused without this.
  bool beyondThisMachine = false;
  ServiceLimits limits;
};

}  // namespace hlv::services
