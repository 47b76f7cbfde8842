// A server in this process, and the kit over a host that speaks to it.
#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>

#include "Client/Sandboxes.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Sandbox/JSON/InstrumentRecords.h"
#include "Server/Server.h"
#include "Tests/Sandbox/SandboxTest.h"
#include "Tests/Server/RawClient.h"

namespace hlv::sandbox::server {

using sandbox::nameOf;
using testing::RawClient;
using testing::requestOf;
using Json = nlohmann::ordered_json;
using Response = RawClient::Response;

inline constexpr const char* apiKey = "X-API-Key: key\r\n";

inline std::string textOf(const Json& body) { return body.is_null() ? "" : body.dump(); }
/// Null for no body.
inline Json bodyOf(const Response& response) {
  return response.body.empty() ? Json() : Json::parse(response.body);
}
inline int portOf(const std::string& url) { return std::stoi(url.substr(url.rfind(':') + 1)); }
/// A header line of a key for requests that create something.
inline std::string keyHeader(const std::string& key) { return "Idempotency-Key: " + key + "\r\n"; }

/// `sandbox` looks at the server's default sandbox from beside it, as another process might.
class ServerTest : public sandbox::SandboxTest {
 protected:
  using Outcome = sandbox::CardAnswer;

  ~ServerTest() override {
    manager.reset(), remote.reset(), local.reset();
    server.reset();
    stop();
  }

  /// Opens the server on the test's store; again, where one is open. Requests are held for an hour.
  void serve(const std::function<void(ServerOptions&)>& change = {}) {
    server.reset();
    auto wanted = options();
    if (change) change(wanted);
    auto opened = Server::open(std::move(wanted));
    ASSERT_TRUE(opened) << opened.problem();
    server = std::move(*opened);
    if (!sandbox) start();
  }
  ServerOptions options() const {
    ServerOptions options;
    options.storePath = storePath();
    options.loops = 2;
    options.listening.limits.answerTime = std::chrono::hours(1);
    return options;
  }
  /// The same, and a host that speaks to the server, with the guest signed in on both sides.
  void serveAndConnect() {
    serve();
    sandbox::SandboxOptions localOptions;
    localOptions.storePath = path("local");
    local = sandbox::Sandbox::open(localOptions).value();
    remote = client::RemoteHost::open(local, {server->backendURL(), server->providerURL()});
    use(remote);
    ASSERT_EQ(nameOf(remote->signIn(email)), "none");
    ASSERT_TRUE(local->signIn(email));
    guest = HLVSDKGuest::currentGuest();
    manager = HLVSDKPaylevenPaymentInstrumentManager::initWithAPIManager(
        backend, provider, HLVSDKReachability::sharedReachability());
  }

  // Requests over connections of their own.

  Response askBackend(const std::string& request, const Json& body = {},
                      const std::string& headers = {}) const {
    return testing::ask(portOf(server->backendURL()), request, textOf(body), headers);
  }
  /// With a key of the API.
  Response askProvider(const std::string& request, const Json& body = {},
                       const std::string& headers = {}) const {
    return testing::ask(portOf(server->providerURL()), request, textOf(body), apiKey + headers);
  }
  /// While this thread pumps the main queue, as the command does.
  Response askConsole(const std::string& request, const Json& body = {}) {
    Response response;
    whilePumping(
        [&] { response = testing::ask(portOf(server->consoleURL()), request, textOf(body)); });
    return response;
  }
  /// Pumps until `work` has ended on a thread of its own.
  void whilePumping(const std::function<void()>& work) {
    const auto platform = DefaultPlatform::shared();
    bool hasEnded = false;
    std::thread working([&] {
      work();
      platform->mainQueue()->async([&] { hasEnded = true; });
    });
    platform->runUntil([&] {
      server->completeFinishedOperations();
      return hasEnded;
    });
    working.join();
  }
  /// The body, of a reply that has this status.
  static Json require(int status, const Response& response) {
    EXPECT_EQ(response.status, status) << response.code();
    return bodyOf(response);
  }
  /// A connection to the provider that has sent this request, and will not send another.
  RawClient listeningAt(const std::string& request) const {
    RawClient client(portOf(server->providerURL()));
    client.send(requestOf(request, "", apiKey));
    return client;
  }

  /// The kit adds a card over the connection.
  Outcome add(const sandbox::Typed& card, const std::string& useCase = "default") {
    auto fields = card;
    fields.useCase = useCase;
    const auto entered = sandbox::EnteredCard::make(fields);
    return answerTo<Outcome>([&](auto completion) {
      manager->addPaymentInstrument(entered, sandbox::EnteredAddress::make({}), guest, completion);
    });
  }
  bool isQuiet() const override { return sandbox->isQuiet() && (!remote || remote->isQuiet()); }

  static std::string guestPath(const std::string& who = email) { return "/v1/guests/" + who; }
  /// As the kit sends it to the backend.
  static Json newCard(const std::string& identifier = "ins_x") {
    return {{"credit_card",
             {{"last_four_digits", "1111"},
              {"brand", "visa"},
              {"use_case", "default"},
              {"external_identifier", identifier},
              {"card_holder", "Erika Mustermann"},
              {"expiry_month", "12"},
              {"expiry_year", "2035"},
              {"billing_address", {{"city", "Berlin"}}},
              {"plv_token", "tok_x"}}},
            {"provider", 0}};
  }
  /// As somebody types it, for a user of the provider or one more instrument.
  static Json enteredCard(const sandbox::Typed& card = "visa") {
    return {{"credit_card", sandbox::newCardJson(*sandbox::EnteredCard::make(card))}};
  }
  static Json newUser(const sandbox::Typed& card = "visa", const std::string& who = email) {
    auto user = enteredCard(card);
    user["email"] = who;
    user["use_case"] = "default";
    return user;
  }

  std::unique_ptr<Server> server;
  std::shared_ptr<client::RemoteHost> remote;
  /// On this side of the connection.
  std::shared_ptr<sandbox::Sandbox> local;
  /// Of the host that speaks to the server.
  std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager;
};

}  // namespace hlv::sandbox::server
