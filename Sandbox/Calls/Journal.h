// What happened, in order: the calls, replies, log lines, assertions and notifications of every
// operation.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace hlv::sandbox {

/// One line of the timeline. No text of it holds a card number beyond its last four digits, or a
/// security code.
struct Event {
  std::int64_t operation = 0;
  /// The caller and the callee: "app", "kit", "backend", "provider", "log" and "assert". A service
  /// that meets a fault is both.
  std::string from;
  std::string to;
  /// What is called or reported, e.g. "createUserToken".
  std::string what;
  /// How it came out, e.g. "token tok_1f…" or "error HLVURLErrorDomain 1"; empty for a call.
  std::string result;
  /// "main", or the name of the thread.
  std::string thread;
  /// Later events have greater numbers.
  std::int64_t number = 0;
  /// When it was recorded, in milliseconds since 1970.
  std::int64_t at = 0;
};

class Store;

/// The timeline of one store.
///
/// Threading: any; events stand in the order in which they were recorded.
class Journal {
 public:
  /// Events before the first operation make one called `first`.
  Journal(std::shared_ptr<Store> store, std::string first);

  /// Begins a new operation and returns its number; later events of this journal belong to it. The
  /// store keeps the last two hundred operations, and the last five thousand events.
  std::int64_t beginOperation(const std::string& name);
  /// Adds a name to the current operation's: what begins while it runs belongs to it.
  void joinOperation(const std::string& name);
  /// Records an event of the current operation, on the calling thread. Masks card numbers. What was
  /// recorded outlives the process; only a failure of power may lose the last events.
  void record(const std::string& from, const std::string& to, const std::string& what,
              const std::string& result = {});

  struct Operation {
    std::int64_t number = 0;
    std::string name;
    std::vector<Event> events;
  };
  /// The last `count` operations, oldest first.
  std::vector<Operation> last(std::size_t count) const;
  /// What was recorded after the event of that number, and in which operations, both oldest first.
  std::vector<Operation> since(std::int64_t event) const;

 private:
  const std::shared_ptr<Store> store_;
  const std::string first_;
  std::atomic<std::int64_t> operation_{0};
};

}  // namespace hlv::sandbox
