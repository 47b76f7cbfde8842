// How the kit is enabled: as it should be, or as an app might get it wrong.
//
// Threading: the main thread.
#pragma once

#include <string>
#include <vector>

namespace hlv::tool {

class Enabling {
 public:
  /// "normal", and "no-entry", "wrong-class", "no-key" and "none".
  static std::vector<std::string> ways();
  /// Enables the kit in one of these ways.
  static void enable(const std::string& way);
};

}  // namespace hlv::tool
