// The threads that write. Private to the server.
#pragma once

#include <functional>
#include <memory>

namespace hlv::server {

/// A commit waits for the disk; here nobody else waits with it.
///
/// Threading: any. The destructor finishes what was posted.
class Writers {
 public:
  explicit Writers(unsigned count);
  ~Writers();
  Writers(const Writers&) = delete;
  Writers& operator=(const Writers&) = delete;

  void post(std::function<void()> task);
  /// Finishes what was posted; what is posted afterwards is freed.
  void finish();

 private:
  struct Pool;
  const std::unique_ptr<Pool> pool_;
};

}  // namespace hlv::server
