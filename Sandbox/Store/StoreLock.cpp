#include "Sandbox/Store/StoreLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace hlv::sandbox {

StoreLock::StoreLock(const std::string& storePath)
    : descriptor_(::open(pathFor(storePath).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
  if (descriptor_ < 0 || ::flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
    problem_ = errno == EWOULDBLOCK
                   ? "Another server works on the store '" + storePath + "'."
                   : "The store cannot be locked: " + std::generic_category().message(errno) + ".";
    return;
  }
  struct stat file {};
  // Whoever removed the store meanwhile has taken the file with it.
  if (::fstat(descriptor_, &file) != 0 || file.st_nlink == 0) {
    problem_ = "The store '" + storePath + "' has just been removed.";
  }
}

StoreLock::~StoreLock() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

}  // namespace hlv::sandbox
