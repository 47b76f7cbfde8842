// One open sandbox of the server. Private to the server.
#pragma once

#include <atomic>
#include <boost/asio/strand.hpp>
#include <boost/asio/thread_pool.hpp>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Sandbox/Store/Store.h"
#include "Server/Api/RequestLog.h"
#include "Values/Mutex.h"

namespace hlv::sandbox::server {

/// The threads that write: a commit waits for the disk, and nobody else with it.
using Writers = boost::asio::thread_pool;

/// Writes that come together share a commit, and with it what is new in the request log.
///
/// Threading: any. A write holds the sandbox until it is done.
class OpenSandbox : public std::enable_shared_from_this<OpenSandbox> {
 public:
  OpenSandbox(std::string id, std::shared_ptr<Store> store, std::shared_ptr<Writers> writers);

  const std::string& id() const { return id_; }
  Store& store() { return *store_; }
  const std::shared_ptr<Store>& sharedStore() const { return store_; }
  RequestLog& log() { return log_; }
  /// Whether the sandbox was deleted while somebody still uses it.
  bool isRemoved() const { return isRemoved_; }
  void markRemoved() { isRemoved_ = true; }
  /// Mixed into the digests of idempotency keys.
  std::string salt() const;

  using Body = std::function<void(Database&)>;
  /// Null when the body's effect is on disk.
  using Done = std::function<void(std::exception_ptr)>;
  /// Returns at once; `done` is called on a writer's thread.
  void write(Body body, Done done);
  /// The same for what is no single transaction: nothing else is written meanwhile. What it throws
  /// goes to `done`.
  void runAlone(std::function<void()> work, Done done);
  /// Writes what is new in the log, if anything, soon.
  void flushLog();

  /// Begins a time in which requests may come, and returns its number.
  int openLog();
  /// Ends that time, if the disk lets it; nothing when another one has begun.
  void closeLog(int time);
  /// Replaces everything but the request log by a copy of another store. To be run alone.
  void restore(const std::string& copy);

 private:
  struct Write {
    Body body;
    Done done;
  };

  void writePending();
  void readSalt();

  const std::string id_;
  const std::shared_ptr<Store> store_;
  const std::shared_ptr<Writers> writers_;
  /// One turn after another, and those of other sandboxes between.
  const boost::asio::strand<Writers::executor_type> turns_;
  RequestLog log_;
  mutable Mutex mutex_;
  std::string salt_ HLV_GUARDED_BY(mutex_);
  /// Those of the next commit.
  std::vector<Write> pending_ HLV_GUARDED_BY(mutex_);
  std::atomic<bool> isFlushing_{false};
  std::atomic<bool> isRemoved_{false};
  Mutex openingMutex_;
  int timesOpened_ HLV_GUARDED_BY(openingMutex_) = 0;
  bool isLogOpen_ HLV_GUARDED_BY(openingMutex_) = false;
};

}  // namespace hlv::sandbox::server
