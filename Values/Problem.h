// What went wrong, for a person.
#pragma once

#include <stdexcept>

namespace hlv {

/// `what()` is one plain sentence. The root of what the sandbox, the client and the command throw.
class Problem : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace hlv
