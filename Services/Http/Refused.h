// How the code of a service ends a request that it does not take. Private to the services.
#pragma once

#include <string>

namespace hlv::services {

/// The sentence holds nothing of the request.
struct Refused {
  int status;
  /// Stable: what a client may compare.
  std::string code;
  std::string sentence;
};

}  // namespace hlv::services
