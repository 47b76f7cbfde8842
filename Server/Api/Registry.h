// The sandboxes of one server. Private to the server.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Sandbox/Records/SandboxDescription.h"
#include "Sandbox/Store/Store.h"
#include "Sandbox/Store/StoreLock.h"
#include "Server/Api/OpenSandbox.h"
#include "Server/Http/HttpError.h"
#include "Server/Http/HttpMessages.h"
#include "Values/Mutex.h"

namespace hlv::sandbox::server {

HttpError noSuchSandbox();

/// A time as the clock is read. Throws `HttpError`, as `moveClock` does.
std::chrono::sys_seconds clockTimeIn(const std::string& text);
/// Moves nothing where the clock cannot go.
void moveClock(Database& database, std::chrono::sys_seconds time);

/// Where clients reach the three listeners.
struct PublicURLs {
  std::string backend;
  std::string provider;
  std::string console;
};

/// The default sandbox is the store itself; the others lie in files of their own beside it, or in
/// memory only. Files are opened when a request needs them, and closed again when they are idle or
/// when too many are open.
///
/// Threading: any. Members throw `HttpError` where a client asks for what cannot be, and
/// `StoreFailure`. Those that say so wait for the disk, and so run on a writer's thread.
class Registry {
 public:
  static constexpr const char* defaultID = "default";

  /// One server at a time works on a store: another one is refused until this object goes. Throws
  /// `Problem`, or what the file system throws, where the store cannot be used.
  Registry(const std::string& storePath, std::optional<std::uint64_t> seed,
           std::shared_ptr<Writers> writers);
  /// Closes what is open. No request is under way any more.
  ~Registry();
  Registry(const Registry&) = delete;
  Registry& operator=(const Registry&) = delete;

  void setURLs(PublicURLs urls);

  /// The sandbox of that id, opened where it is not; it stays open while it is held. Throws 404.
  std::shared_ptr<OpenSandbox> open(const std::string& id);
  /// The same for one that is open; null for any other.
  std::shared_ptr<OpenSandbox> findOpen(const std::string& id);
  /// Where its files are; empty for one in memory.
  std::string pathOf(const OpenSandbox& sandbox) const;

  /// Runs `task` on a writer's thread.
  void post(std::function<void()> task);

  // These wait for the disk.

  SandboxDescription create(const NewSandbox& wanted);
  void remove(const std::string& id);
  /// Those after `after` in the order of their ids, at most `limit`; also those whose store cannot
  /// be used.
  std::vector<SandboxDescription> list(const std::string& after, std::size_t limit);
  SandboxDescription describe(const std::string& id);

  // A snapshot is a store in a file of its own, and a row of the registry's. They wait, too.

  SnapshotDescription snapshot(const std::string& id);
  std::vector<SnapshotDescription> snapshots() const;
  void removeSnapshot(const std::string& snapshot) const;
  /// `then` is called on a writer's thread.
  void restore(const std::string& id, const std::string& snapshot, OpenSandbox::Done then);

  /// A text of the server's own that outlives it; missing for none.
  std::optional<std::string> note(const std::string& name);
  void setNote(const std::string& name, const std::string& text);

  /// Writes the logs, and closes and deletes what is due.
  void runMaintenance();

 private:
  struct Entry {
    std::chrono::sys_seconds created;
    std::optional<std::chrono::sys_seconds> expires;
    bool isInMemory = false;
    /// Null while its files are closed.
    std::shared_ptr<OpenSandbox> sandbox = {};
    /// By the sandbox's count.
    int timeOpened = 0;
    /// While they are being closed.
    std::weak_ptr<OpenSandbox> closing = {};
    std::chrono::steady_clock::time_point lastUse = {};

    bool isInUse() const { return sandbox.use_count() > 1; }
  };

  void readEntries();
  SandboxDescription describeEntry(const std::string& id);
  void describeStore(SandboxDescription& description);
  /// Throws 404, also for one whose time is over.
  Entry& entryOf(const std::string& id) HLV_REQUIRES(mutex_);
  void keepOpen(Entry& entry) HLV_REQUIRES(mutex_);
  void close(Entry& entry);
  /// Nobody else makes or removes one of this name until what is returned goes; null where somebody
  /// does.
  std::shared_ptr<void> reserve(const std::string& id) HLV_REQUIRES(mutex_);
  std::shared_ptr<void> reserveNew(const std::string& id, const NewSandbox& wanted);
  std::shared_ptr<Store> makeStore(const std::string& id, const NewSandbox& wanted) const;
  void removeFiles(const std::string& id) const;
  std::shared_ptr<Store> openStore(const std::string& id) const;
  std::string storePathOf(const std::string& id) const;
  /// Throws 404.
  std::string requireSnapshot(const std::string& snapshot) const;
  std::string snapshotPathOf(const std::string& snapshot) const;

  const std::string storePath_;
  const std::string folder_;
  const StoreLock lock_;
  std::shared_ptr<Store> registry_;
  const std::shared_ptr<Writers> writers_;
  const std::size_t mostOpen_;
  mutable Mutex mutex_;
  PublicURLs urls_ HLV_GUARDED_BY(mutex_);
  std::map<std::string, Entry> entries_ HLV_GUARDED_BY(mutex_);
  std::set<std::string> reserved_ HLV_GUARDED_BY(mutex_);
  /// Those that are open and have files; not the default one.
  std::vector<Entry*> open_ HLV_GUARDED_BY(mutex_);
  /// How many wait for their end.
  std::atomic<std::size_t> closing_{0};
};

}  // namespace hlv::sandbox::server
