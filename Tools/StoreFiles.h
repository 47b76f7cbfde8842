// Where a sandbox store lies, and how it goes away.
//
// Threading: any thread, one process at a time.
#pragma once

#include <memory>
#include <string>

namespace hlv::sandbox::tool {

/// `path`, or the store in the user's data folder, which is made for its owner only. Throws
/// `Problem` when there is no such folder.
std::string storePathOrDefault(const std::string& path);
/// Whether the file is a sandbox store, of whatever version.
bool isStoreFile(const std::string& path);
/// Removes the store and what stands beside it: write-ahead log, shared memory and log file, and a
/// server's sandboxes, snapshots, ports file and lock. Throws `Problem` while a server works on the
/// store, and when one of them cannot be removed.
void removeStore(const std::string& path);

/// The store that a command makes where there is none. While it lives, no other command takes the
/// store away.
class NewStore {
 public:
  explicit NewStore(const std::string& path);
  /// Removes it when the command could not begin, and its folder when nothing else is in it. What
  /// cannot be removed stays, and so does what another command has used or works on.
  void remove();

 private:
  const std::string path_;
  std::shared_ptr<void> inUse_;
  const bool isNew_;
};

}  // namespace hlv::sandbox::tool
