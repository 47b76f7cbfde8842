// What the kit promises, completed once more and without a line of the kit's own code.
// ReferenceModel.cpp is the place to read what each operation does, in which order, on which thread
// and in which words.
//
// Threading: one thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Tests/Explorer/ModelRunner.h"

namespace hlv::testing {

class ReferenceModel final : private ModelRunner {
 public:
  using ModelRunner::Violation;
  /// The first thing in the history that is not as it must be, or nothing.
  static std::optional<Violation> examine(const Scenario& scenario, const History& history);

 private:
  using Instrument = std::shared_ptr<FakeInstrument>;
  /// What a confirmation ends with.
  using Confirmed =
      std::function<void(const NullableString& token, const Instrument&, const Text&)>;
  struct Fetched;

  using ModelRunner::ModelRunner;
  void start(OperationKind kind, const Asking& who) override;
  void handle(const Posted& notification) override;

  void enable(const Request& request);
  void add(const Asking& who);
  void addFirst(const Asking& who);
  void addFurther(const Asking& who);
  void confirm(const Asking& who, const NullableString& token, Confirmed then);
  void remove(const Asking& who);
  void update(const Asking& who);
  void synchronize(const Asking& who);
  void fetchAll(const Asking& who, std::function<void(const std::shared_ptr<Fetched>&)> then);
  void finish(const Asking& who, const Fetched& fetched, bool& synchronizing);
};

}  // namespace hlv::testing
