// The side of a service that calls from this process come in at. Private to the sandbox.
//
// Threading: any.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "Sandbox/Calls/CallHandler.h"
#include "Sandbox/Calls/Journal.h"
#include "Sandbox/Calls/ReplyQueue.h"
#include "Sandbox/Calls/Summary.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {

/// A handling refers to the service's data and never to this object's owner, so that a client which
/// is let go frees what still waits.
class Service {
 public:
  struct Surroundings {
    std::shared_ptr<Store> store;
    std::shared_ptr<Journal> journal;
    std::shared_ptr<ReplyQueue> answers;
  };

  Service(std::string name, std::string errorDomain, ServiceThread thread,
          const Surroundings& surroundings)
      : core_(std::make_shared<Core>(Core{CallHandler(std::move(name), std::move(errorDomain)),
                                          surroundings.store, surroundings.journal})),
        thread_(thread),
        answers_(surroundings.answers) {}

  /// Records a call of the kit that has no reply.
  void recordOneWayCall(const std::string& what) const {
    core_->journal->record("kit", core_->handler.name(), what);
  }

  /// Returns at once; the completion, which may be empty, is called on the service's thread.
  template <class... Results>
  void take(Call call, std::function<void(Results...)> completion,
            std::type_identity_t<Handling<Results...>> handling) const {
    auto what = call.description();
    core_->journal->record("kit", core_->handler.name(), what);
    answers_->call(thread_,
                   [core = core_, call = std::move(call), what = std::move(what),
                    completion = std::move(completion),
                    handling = std::move(handling)]() mutable -> std::optional<PreparedReply> {
                     auto [results, fault] = core->handle(call, handling);
                     if (fault) core->recordFault(*fault);
                     const auto times = deliveries(fault);
                     if (times == 0) return std::nullopt;
                     if (auto error = transportErrorOf(fault)) results = failed<Results...>(error);
                     const std::chrono::milliseconds delay(fault ? fault->delayMilliseconds : 0);
                     return PreparedReply{
                         delay, [core, times, what = std::move(what),
                                 completion = std::move(completion), results = std::move(results)] {
                           for (int i = 0; i < times; ++i) {
                             core->journal->record(core->handler.name(), "kit", what,
                                                   summaryOf(results));
                             if (completion) std::apply(completion, results);
                           }
                         }};
                   });
  }

 private:
  /// What outlives the client while a call waits.
  struct Core {
    CallHandler handler;
    std::shared_ptr<Store> store;
    std::shared_ptr<Journal> journal;

    void recordFault(const Fault& fault) const {
      journal->record(handler.name(), handler.name(), descriptionOf(fault));
    }

    template <class... Results>
    Handled<Results...> handle(const Call& call, const Handling<Results...>& handling) const {
      try {
        return store->write(
            [&](Database& database) { return handler.handle(database, call, handling); });
      } catch (const StoreFailure& failure) {
        return {failed<Results...>(handler.errorFor(failure)), std::nullopt};
      }
    }
  };

  const std::shared_ptr<const Core> core_;
  const ServiceThread thread_;
  const std::shared_ptr<ReplyQueue> answers_;
};

}  // namespace hlv::sandbox
