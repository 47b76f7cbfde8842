// Keeps a store to one server.
//
// Threading: any thread, one at a time.
#pragma once

#include <string>

namespace hlv::sandbox {

/// Held by the one server that works on a store, and by whoever removes the store. It lies in a
/// file beside the store, which a server leaves in place, so that nobody waits for one that goes
/// away. The system gives the lock back when the process ends, however it ends.
class StoreLock {
 public:
  /// Tries once, and does not wait.
  explicit StoreLock(const std::string& storePath);
  ~StoreLock();
  StoreLock(const StoreLock&) = delete;
  StoreLock& operator=(const StoreLock&) = delete;

  /// Why this does not hold the lock, in one sentence; empty while it does.
  [[nodiscard]] const std::string& problem() const { return problem_; }
  static std::string pathFor(const std::string& storePath) { return storePath + ".lock"; }

 private:
  const int descriptor_;
  std::string problem_;
};

}  // namespace hlv::sandbox
