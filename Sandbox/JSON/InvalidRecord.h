// What a reader of records throws.
#pragma once

#include <string>
#include <utility>

#include "Values/Problem.h"

namespace hlv::sandbox {

/// The sentence holds nothing of what was read.
///
/// Threading: immutable; any.
class InvalidRecord : public Problem {
 public:
  InvalidRecord(std::string code, const std::string& sentence)
      : Problem(sentence), code_(std::move(code)) {}

  /// Stable, for programs to compare: "malformed-json", "wrong-type", "unknown-member" or
  /// "unreadable-text".
  const std::string& code() const { return code_; }

 private:
  std::string code_;
};

}  // namespace hlv::sandbox
