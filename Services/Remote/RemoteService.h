// What both remote clients do with every call: tell the journal, fail while this side's network is
// off, ask the service on a thread of their own, and answer once. Private to the services.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Sandbox/Sandbox.h"
#include "Sandbox/SandboxError.h"
#include "Sandbox/Service/Failed.h"
#include "Sandbox/Service/Summary.h"
#include "Sandbox/TransportError.h"
#include "Services/Remote/CallThreads.h"
#include "Services/Remote/HttpClient.h"

namespace hlv::services {

/// Threading: any.
class RemoteService {
 public:
  RemoteService(std::string name, HttpClient client, std::shared_ptr<sandbox::Sandbox> local,
                std::shared_ptr<CallThreads> threads)
      : desk_(std::make_shared<Desk>(Desk{std::move(name), std::move(client), std::move(local)})),
        threads_(std::move(threads)) {}

  /// Tells of something that the kit said and that has no answer.
  void hear(const std::string& what) const { desk_->tell("kit", desk_->name, what); }

  /// Makes what is sent; throws `sandbox::Refusal` where nothing can be.
  using Request = std::function<ClientRequest()>;
  /// Reads an answer's body; throws `Json::exception` where it cannot.
  template <class... Results>
  using Reading = std::function<std::tuple<Results...>(const Json&)>;

  /// Returns at once; the completion, which may be empty, is called on another thread.
  template <class... Results>
  void take(std::string what, std::function<void(Results...)> completion, Request request,
            std::type_identity_t<Reading<Results...>> reading) const {
    desk_->tell("kit", desk_->name, what);
    threads_->run([desk = desk_, what = std::move(what), completion = std::move(completion),
                   request = std::move(request), reading = std::move(reading)] {
      const auto results = desk->results<Results...>(request, reading);
      desk->tell(desk->name, "kit", what, sandbox::summaryOf(results));
      if (completion) std::apply(completion, results);
    });
  }

 private:
  struct Desk {
    std::string name;
    HttpClient client;
    std::shared_ptr<sandbox::Sandbox> local;

    void tell(const std::string& from, const std::string& to, const std::string& what,
              const std::string& result = {}) const {
      local->journal().record(from, to, what, result);
    }

    template <class... Results>
    std::tuple<Results...> results(const Request& request,
                                   const Reading<Results...>& reading) const {
      try {
        if (!isReachable(local->host()->reachability()->currentState())) {
          return sandbox::failed<Results...>(sandbox::notConnectedError());
        }
        const auto answer = client.send(request());
        if (answer.error) return sandbox::failed<Results...>(answer.error);
        return reading(answer.body);
      } catch (const sandbox::Refusal& refusal) {
        return sandbox::failed<Results...>(refusal.error);
      } catch (const Json::exception&) {
        return sandbox::failed<Results...>(
            sandbox::transportError(sandbox::TransportErrorCode::unreadable));
      }
    }
  };

  const std::shared_ptr<const Desk> desk_;
  const std::shared_ptr<CallThreads> threads_;
};

}  // namespace hlv::services
