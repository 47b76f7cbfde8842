// What both services do with every call: tell the journal, meet the armed faults, fail while the
// network is off, and answer from a thread of their own. Private to the sandbox.
//
// Threading: any.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "Sandbox/AsOne.h"
#include "Sandbox/ErrorCodes.h"
#include "Sandbox/Fault.h"
#include "Sandbox/Journal.h"
#include "Sandbox/Reachability.h"
#include "Sandbox/SandboxError.h"
#include "Sandbox/Service/Answers.h"
#include "Sandbox/Service/Failed.h"
#include "Sandbox/Service/FaultOnTheWay.h"
#include "Sandbox/Service/Summary.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {

/// One call, as it is told and as faults see it.
struct Call {
  std::string operation;
  NullableString useCase;
  /// What else the story should tell of it; may be empty.
  std::string subject;

  /// As the journal tells it; the answer says the same again, so that the two can be joined.
  std::string told() const;
};

/// What the service does with a call. The variation is the kind of a fault that changes the results
/// and not whether they come; empty means none. Refuses by throwing `Refusal`.
template <class... Results>
using Handling = std::function<std::tuple<Results...>(const std::string& variation)>;

/// Where calls come from.
enum class Way {
  /// This process: what goes wrong on the way is an error that the caller is handed.
  embedded,
  /// A door, which lets it happen to the connection: see `FaultOnTheWay`.
  door
};

/// The side of a service that calls come in at. A handling refers to the service's data and never
/// to this object's owner, so that a client which is let go frees what still waits.
class Service {
 public:
  struct Surroundings {
    std::shared_ptr<Journal> journal;
    std::shared_ptr<Faults> faults;
    std::shared_ptr<Reachability> reachability;
    std::shared_ptr<Answers> answers;
    Way way = Way::embedded;
    /// May be empty.
    AsOne asOne = {};
  };

  Service(std::string name, std::string errorDomain, Lane lane, const Surroundings& surroundings)
      : desk_(std::make_shared<Desk>(
            Desk{std::move(name), std::move(errorDomain), surroundings.journal, surroundings.faults,
                 surroundings.reachability, surroundings.way, surroundings.asOne})),
        lane_(lane),
        answers_(surroundings.answers) {}

  /// Tells of something that the caller said and that has no answer.
  void hear(const std::string& what) const {
    desk_->journal->record(desk_->caller(), desk_->name, what);
  }

  /// Returns at once; the completion, which may be empty, is called on the service's thread.
  template <class... Results>
  void take(Call call, std::function<void(Results...)> completion,
            std::type_identity_t<Handling<Results...>> handling) const {
    auto what = call.told();
    desk_->journal->record(desk_->caller(), desk_->name, what);
    answers_->call(
        lane_,
        [desk = desk_, call = std::move(call), what = std::move(what),
         completion = std::move(completion),
         handling = std::move(handling)]() mutable -> std::optional<Delivery> {
          const auto fault = desk->meet(call);
          if (fault && fault->kind == "never") return std::nullopt;
          auto results = desk->serve(fault, handling, completion);
          const std::chrono::milliseconds delay(fault ? fault->delayMilliseconds : 0);
          const int times = fault && fault->kind == "twice" && desk->way == Way::embedded ? 2 : 1;
          return Delivery{
              delay, [desk, what = std::move(what), times,
                      kind = fault && desk->way == Way::door ? fault->kind : "",
                      completion = std::move(completion), results = std::move(results)] {
                const FaultOnTheWay befalling(kind);
                for (int i = 0; i < times; ++i) {
                  desk->journal->record(desk->name, desk->caller(), what, summaryOf(results));
                  if (completion) std::apply(completion, results);
                }
              }};
        });
  }

 private:
  /// What outlives the client while a call waits.
  struct Desk {
    std::string name;
    std::string errorDomain;
    std::shared_ptr<Journal> journal;
    std::shared_ptr<Faults> faults;
    std::shared_ptr<Reachability> reachability;
    Way way;
    AsOne asOne;

    const char* caller() const { return way == Way::door ? "client" : "kit"; }
    /// A call that does not leave the phone meets no fault.
    std::optional<Fault> meet(const Call& call) const;
    /// Throws the refusal that stands before every handling.
    void checkWayIn(const std::optional<Fault>& fault) const;
    /// Throws the refusal of a call that was served and whose answer is lost.
    void checkWayOut(const std::optional<Fault>& fault) const;
    ErrorPtr errorFor(const StoreFailure& failure) const;

    template <class... Results>
    std::tuple<Results...> serve(const std::optional<Fault>& fault,
                                 const Handling<Results...>& handling,
                                 const std::function<void(Results...)>& completion) const {
      if (!asOne) return handle(fault, handling);
      std::tuple<Results...> results;
      try {
        asOne([&] {
          results = handle(fault, handling);
          if (completion) std::apply(completion, results);
        });
      } catch (const StoreFailure& failure) {
        results = failed<Results...>(errorFor(failure));
      }
      return results;
    }

    template <class... Results>
    std::tuple<Results...> handle(const std::optional<Fault>& fault,
                                  const Handling<Results...>& handling) const {
      try {
        checkWayIn(fault);
        auto results = handling(fault ? fault->kind : "");
        checkWayOut(fault);
        return results;
      } catch (const Refusal& refusal) {
        return failed<Results...>(refusal.error);
      } catch (const StoreFailure& failure) {
        return failed<Results...>(errorFor(failure));
      }
    }
  };

  const std::shared_ptr<const Desk> desk_;
  const Lane lane_;
  const std::shared_ptr<Answers> answers_;
};

}  // namespace hlv::sandbox
