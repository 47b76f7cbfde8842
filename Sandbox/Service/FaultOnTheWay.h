// What goes wrong with an answer between a service and a caller in another process.
#pragma once

#include <string>

namespace hlv::sandbox {

/// While an answer is delivered to a door, the fault that the door is to let happen to it. A caller
/// in the same process meets it as an error, or as a second call of its completion.
///
/// Threading: each thread has its own.
class FaultOnTheWay {
 public:
  /// The fault's kind; empty for none. What happens on the way by "refused", "reset", "garbage" and
  /// "twice" is for the door to do; the others have happened already.
  explicit FaultOnTheWay(std::string kind);
  ~FaultOnTheWay();
  FaultOnTheWay(const FaultOnTheWay&) = delete;
  FaultOnTheWay& operator=(const FaultOnTheWay&) = delete;

  /// Of the answer that this thread delivers now; empty for none.
  static std::string current();

 private:
  const std::string kind_;
};

}  // namespace hlv::sandbox
