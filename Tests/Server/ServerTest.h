// A server in this process, and the kit over a host that speaks to it.
#pragma once

#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "Client/Sandboxes.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Server/Server.h"
#include "Tests/Sandbox/SandboxTest.h"
#include "Tests/Server/RawClient.h"

namespace hlv::sandbox::server {

using testing::RawClient;
using testing::requestOf;
using Json = nlohmann::ordered_json;
using Response = RawClient::Response;

inline std::string textOf(const Json& body) { return body.is_null() ? "" : body.dump(); }
inline int portOf(const std::string& url) { return std::stoi(url.substr(url.rfind(':') + 1)); }

/// `sandbox` looks at the server's default sandbox from beside it, as another process might.
class ServerTest : public SandboxTest {
 protected:
  ~ServerTest() override {
    manager.reset(), remote.reset(), local.reset();
    server.reset();
    stop();
  }

  /// Opens the server on the test's store; again, where one is open. Requests are held for an hour.
  void serve() {
    server.reset();
    auto opened = Server::open(options());
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
    SandboxOptions localOptions;
    localOptions.storePath = path("local");
    local = Sandbox::open(localOptions).value();
    remote = client::RemoteHost::open(local, {server->backendURL(), server->providerURL()});
    use(remote);
    ASSERT_EQ(nameOf(remote->signIn(email)), "none");
    ASSERT_TRUE(local->signIn(email));
    guest = HLVSDKGuest::currentGuest();
    manager = HLVSDKPaylevenPaymentInstrumentManager::initWithAPIManager(
        backend, provider, HLVSDKReachability::sharedReachability());
  }

  // Requests over connections of their own.

  Response askBackend(const std::string& request) const {
    return testing::ask(portOf(server->backendURL()), request);
  }
  /// With a key of the API.
  Response askProvider(const std::string& request, const Json& body = {}) const {
    return testing::ask(portOf(server->providerURL()), request, textOf(body), "X-API-Key: key\r\n");
  }
  /// The body, of a reply that has this status.
  static Json require(int status, const Response& response) {
    EXPECT_EQ(response.status, status) << response.code();
    return response.body.empty() ? Json() : Json::parse(response.body);
  }

  /// The kit adds a card over the connection.
  void addVisa() {
    answerTo<CardAnswer>([&](auto completion) {
      manager->addPaymentInstrument(EnteredCard::make(Typed("visa")), EnteredAddress::make({}),
                                    guest, completion);
    });
  }
  bool isQuiet() const override { return sandbox->isQuiet() && (!remote || remote->isQuiet()); }

  static std::string guestPath(const std::string& who = email) { return "/v1/guests/" + who; }

  std::unique_ptr<Server> server;
  std::shared_ptr<client::RemoteHost> remote;
  /// On this side of the connection.
  std::shared_ptr<Sandbox> local;
  /// Of the host that speaks to the server.
  std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager;
};

}  // namespace hlv::sandbox::server
