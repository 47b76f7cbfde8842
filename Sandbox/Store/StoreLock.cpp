#include "Sandbox/Store/StoreLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace hlv::sandbox {

Result<StoreLock> lockStore(const std::string& storePath) {
  using Locked = Result<StoreLock>;
  // One for all names of the store.
  std::error_code unknown;
  const auto store = std::filesystem::weakly_canonical(storePath, unknown).string();
  const auto path = (unknown ? storePath : store) + ".lock";
  const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  const auto failure = [] {
    return Locked::failure("The store cannot be locked: " + std::generic_category().message(errno) +
                           ".");
  };
  if (descriptor < 0) return failure();
  StoreLock lock(nullptr, [descriptor](const void*) { ::close(descriptor); });
  if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    return errno == EWOULDBLOCK
               ? Locked::failure("Another server works on the store '" + storePath + "'.")
               : failure();
  }
  struct stat file {};
  // Whoever removed the store meanwhile has taken the file with it.
  if (::fstat(descriptor, &file) != 0 || file.st_nlink == 0) {
    return Locked::failure("The store '" + storePath + "' has just been removed.");
  }
  return lock;
}

}  // namespace hlv::sandbox
