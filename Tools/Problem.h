// Why a command could not begin.
#pragma once

#include <stdexcept>

namespace hlv::tool {

/// A usage or store problem in one plain sentence. Ends the command with exit status 2.
class Problem : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace hlv::tool
