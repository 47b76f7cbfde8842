// The host's clients of a backend and a provider in other processes, and what both do with every
// call: record it in the journal, fail while this side's network is off, send the request, and
// complete once. Private to this folder.
#pragma once

#include <functional>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "Client/HttpClient.h"
#include "Client/RemoteGuest.h"
#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Sandbox/Calls/CallHandler.h"
#include "Sandbox/Calls/Summary.h"
#include "Sandbox/Errors/SandboxError.h"
#include "Sandbox/Sandbox.h"
#include "Sandbox/Testing/Tester.h"

namespace hlv::client {

/// Calls in flight keep the local sandbox, and nothing else of the service.
///
/// Threading: any.
class RemoteService {
 public:
  RemoteService(std::string name, HttpClient client, std::shared_ptr<sandbox::Sandbox> local)
      : client_(std::move(client)),
        context_(std::make_shared<Context>(Context{std::move(name), std::move(local)})) {}

  /// Records a call of the kit's that has no reply.
  void recordOneWayCall(const std::string& what) const { context_->recordCall(what); }

  using RequestMaker = HttpLoop::RequestMaker;
  /// Reads a reply's body; throws `sandbox::InvalidRecord` where it cannot.
  template <class... Results>
  using Reader = std::function<std::tuple<Results...>(const Json&)>;

  /// Returns at once; the completion, which may be empty, is called on the client's thread.
  template <class... Results>
  void call(const sandbox::Call& call, std::function<void(Results...)> completion,
            RequestMaker request, std::type_identity_t<Reader<Results...>> reader) const {
    auto description = call.description();
    context_->recordCall(description);
    client_.send(
        [context = context_, request = std::move(request)] {
          context->requireNetwork();
          return request();
        },
        [context = context_, description = std::move(description),
         completion = std::move(completion), reader = std::move(reader)](const ClientReply& reply) {
          const auto results = resultsOf<Results...>(reply, reader);
          context->recordReply(description, sandbox::summaryOf(results));
          if (completion) std::apply(completion, results);
        });
  }

  /// With 128 random bits, and letters only, so that none looks like a card number.
  static std::string freshIdempotencyKey() {
    std::random_device random;
    std::uniform_int_distribution<int> letter('a', 'p');
    std::string key;
    for (int i = 0; i < 32; ++i) key += static_cast<char>(letter(random));
    return key;
  }

 private:
  struct Context {
    std::string name;
    std::shared_ptr<sandbox::Sandbox> local;

    void recordCall(const std::string& description) const {
      local->journal().record("kit", name, description);
    }
    void recordReply(const std::string& description, const std::string& result) const {
      try {
        local->journal().record(name, "kit", description, result);
      } catch (const std::runtime_error&) {
        // The store has stopped working; the call completes all the same.
      }
    }
    /// Throws `sandbox::Refusal`.
    void requireNetwork() const {
      if (!isReachable(local->host()->reachability()->currentState())) {
        throw sandbox::Refusal{sandbox::notConnectedError()};
      }
    }
  };

  template <class... Results>
  static std::tuple<Results...> resultsOf(const ClientReply& reply,
                                          const Reader<Results...>& reader) {
    if (reply.error) return sandbox::failed<Results...>(reply.error);
    try {
      return reader(reply.body);
    } catch (const sandbox::InvalidRecord&) {
      return sandbox::failed<Results...>(
          sandbox::transportError(sandbox::TransportErrorCode::unreadable));
    }
  }

  const HttpClient client_;
  const std::shared_ptr<const Context> context_;
};

// What the host has of both.

/// `local` knows who is signed in on this side.
std::shared_ptr<HLVSDKAPIManager> remoteBackend(RemoteService service,
                                                std::shared_ptr<sandbox::Sandbox> local,
                                                std::shared_ptr<const RemoteSession> session,
                                                std::shared_ptr<RemoteGuests> guests);
std::shared_ptr<PLVInAppClient> remoteProvider(RemoteService service);
/// Of the sandbox that the provider's client speaks to. `guest` names the guest whom instruments
/// and scenarios are for; missing leaves it to the service.
std::shared_ptr<sandbox::Tester> remoteTester(HttpClient control,
                                              std::function<NullableString()> guest);

}  // namespace hlv::client
