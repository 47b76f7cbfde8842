// The one file that holds everything the sandbox remembers. Private to the sandbox.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {

/// What `write` returned is on disk. Several processes may use one file at once.
///
/// Threading: any. One thread is inside at a time. A body may enter again: what it writes there is
/// a part of the same transaction, and undone alone when only the inner body throws.
class Store {
 public:
  struct Opened {
    /// Null when the file cannot be used; nothing was changed then.
    std::shared_ptr<Store> store;
    /// One plain sentence when it cannot.
    std::string problem;
    bool isNew = false;
  };

  /// Opens a store, or makes one where there is no file, or an empty one.
  static Opened open(const std::string& path);

  explicit Store(std::unique_ptr<Database> database) : database_(std::move(database)) {}

  /// Runs `body(Database&)` in one transaction, which ends on disk before this returns, or not at
  /// all when the body throws.
  template <class Body>
  auto write(Body body) {
    const std::lock_guard lock(mutex_);
    Transaction transaction(*database_);
    if constexpr (std::is_void_v<std::invoke_result_t<Body, Database&>>) {
      body(*database_);
      transaction.commit();
    } else {
      auto result = body(*database_);
      transaction.commit();
      return result;
    }
  }

  template <class Body>
  auto read(Body body) {
    const std::lock_guard lock(mutex_);
    return body(*database_);
  }

  /// For readers that have no way to report a failure: answers the zero of the result.
  template <class Body>
  auto readOrNothing(Body body) {
    try {
      return read(std::move(body));
    } catch (const StoreFailure&) {
      return std::invoke_result_t<Body, Database&>();
    }
  }

 private:
  std::recursive_mutex mutex_;
  const std::unique_ptr<Database> database_;
};

}  // namespace hlv::sandbox
