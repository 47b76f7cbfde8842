#include "Tools/StoreFiles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <thread>

#include "Sandbox/Sandbox.h"
#include "Sandbox/Store/StoreLock.h"
#include "Values/Problem.h"

namespace hlv::sandbox::tool {
namespace {

/// What stands beside a store, and then the store itself: while it is there, a removal that failed
/// can be repeated. Last its lock, so that no server begins to work on a store that goes.
constexpr const char* storeSuffixes[] = {".sandboxes",      "-wal", "-shm", ".log", ".ports.json",
                                         ".ports.json.new", "",     ".lock"};

std::filesystem::path dataFolder() {
  const char* data = std::getenv("XDG_DATA_HOME");
  if (data && *data == '/') return data;
  const char* home = std::getenv("HOME");
  if (home && *home == '/') return std::filesystem::path(home) / ".local" / "share";
  throw Problem("There is no data folder for the store; name a file with --store FILE.");
}

/// Null when others keep the lock that long. Not only commands may have it: some scripts lock the
/// folder that they work in.
std::shared_ptr<void> lockFolderOf(const std::string& path, int operation,
                                   std::chrono::milliseconds patience) {
  const auto folder = std::filesystem::path(path).parent_path();
  const int file = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return nullptr;
  std::shared_ptr<void> lock(new int(file), [](int* held) {
    ::close(*held);
    delete held;
  });
  constexpr std::chrono::milliseconds step(10);
  for (; ::flock(file, operation | LOCK_NB) != 0; patience -= step) {
    if (patience <= step) return nullptr;
    std::this_thread::sleep_for(step);
  }
  return lock;
}

bool isUnused(const std::string& path) {
  const auto opened = Sandbox::open({.storePath = path, .seed = {}, .remoteLogPath = "/dev/null"});
  return opened && (*opened)->journal().last(1).empty() && (*opened)->tester()->armed().empty();
}

}  // namespace

std::string storePathOrDefault(const std::string& path) {
  if (!path.empty()) return path;
  const auto folder = dataFolder() / "paylevenkit";
  std::error_code failure;
  std::filesystem::create_directories(folder.parent_path(), failure);
  if (::mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
    throw Problem(std::string("The folder for the store cannot be made: ") +
                  std::generic_category().message(errno) + "; name a file with --store FILE.");
  }
  return (folder / "store.sqlite").string();
}

bool isStoreFile(const std::string& path) {
  std::array<char, 72> header{};
  std::ifstream file(path, std::ios::binary);
  if (!file.read(header.data(), header.size())) return false;
  // SQLite's own mark stands first, and the application's at byte 68.
  return std::string_view(header.data(), 15) == "SQLite format 3" &&
         std::string_view(header.data() + 68, 4) == "HLVS";
}

void removeStore(const std::string& path) {
  const auto lock = lockStore(path).value();
  for (const char* suffix : storeSuffixes) {
    std::error_code failure;
    std::filesystem::remove_all(path + suffix, failure);
    if (failure) throw Problem("The store cannot be removed: " + failure.message() + ".");
  }
}

NewStore::NewStore(const std::string& path)
    : path_(path),
      inUse_(lockFolderOf(path, LOCK_SH, std::chrono::milliseconds(300))),
      isNew_(!std::filesystem::exists(path)) {}

void NewStore::remove() {
  inUse_.reset();
  const auto alone = lockFolderOf(path_, LOCK_EX, {});
  if (!isNew_ || !alone) return;
  try {
    if (std::filesystem::exists(path_) && !isUnused(path_)) return;
    removeStore(path_);
    if (path_ != storePathOrDefault({})) return;
    std::error_code ignored;
    std::filesystem::remove(std::filesystem::path(path_).parent_path(), ignored);
  } catch (const Problem&) {
    return;
  }
}

}  // namespace hlv::sandbox::tool
