// Failures on demand.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hlv::sandbox {

/// What to do to calls of one operation of a service. Armed in the store, so that a fault outlives
/// the process that armed it.
struct Fault {
  /// One of `Faults::operations()`: an operation's first keyword.
  std::string operation;
  /// One of `Faults::kinds()`.
  std::string kind;
  /// How many more calls it meets; missing means every one.
  std::optional<std::int64_t> remaining = 1;
  /// How long the answer waits. A delayed answer comes after every undelayed one that is on its
  /// way, so that the order does not depend on the machine.
  std::int64_t delayMilliseconds = 0;
  /// By how much more an answer may wait; each waits as long as a throw of the store's dice says.
  std::int64_t spreadMilliseconds = 0;
  /// Of how many in a hundred calls it meets, by the store's dice, which a seed makes repeatable. A
  /// call that it spares is not counted down.
  std::int64_t probability = 100;
  /// The error's code, for the kind "error".
  std::int64_t code = 500;
  /// Meets only calls for this use case; missing means all.
  std::optional<std::string> useCase;
  /// Given by `arm`.
  std::int64_t number = 0;

  bool operator==(const Fault&) const = default;
};

/// One call that met a fault.
struct Firing {
  std::int64_t faultNumber = 0;
  std::string operation;
  std::string kind;
};

class Store;

/// The armed faults of one store.
///
/// Threading: any.
class Faults {
 public:
  explicit Faults(std::shared_ptr<Store> store);

  /// The operations that can fail, backend first.
  static std::vector<std::string> operations();
  /// "error", "delay", "refused", "reset", "garbage", "never", "twice", "no-token",
  /// "no-identifier", "other-state", "no-list". A call that is refused reaches nobody; one that is
  /// reset or answered with garbage was served, and only the caller does not know.
  static std::vector<std::string> kinds();

  /// Returns one plain sentence when the fault makes no sense, or an empty string.
  std::string arm(const Fault& fault);
  std::vector<Fault> armed() const;
  void clear();
  std::vector<Firing> firings() const;

  /// Takes the oldest fault that meets a call, counts it down and records the firing. Its delay is
  /// the one that the dice chose.
  std::optional<Fault> take(const std::string& operation,
                            const std::optional<std::string>& useCase);

 private:
  const std::shared_ptr<Store> store_;
};

}  // namespace hlv::sandbox
