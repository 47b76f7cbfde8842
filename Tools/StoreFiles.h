// Where a sandbox store lies, and how it goes away.
//
// Threading: any thread, one process at a time.
#pragma once

#include <string>

namespace hlv::tool {

/// `path`, or the store in the user's data folder, which is made for its owner only. Throws
/// `Problem` when there is no such folder.
std::string storePathOrDefault(const std::string& path);
/// Whether the file is a sandbox store, of whatever version.
bool isStoreFile(const std::string& path);
/// Removes the store and what stands beside it: write-ahead log, shared memory and log file, and a
/// server's sandboxes, snapshots, ports file and lock. Throws `Problem` while a server works on the
/// store, and when one of them cannot be removed.
void removeStore(const std::string& path);
/// Removes the store of a command that could not begin, and its folder when nothing else is in it.
/// What cannot be removed stays.
void removeNewStore(const std::string& path);

}  // namespace hlv::tool
