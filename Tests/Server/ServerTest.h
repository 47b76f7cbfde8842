// A server in this process, and the kit over a host that speaks to it.
#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "Client/Sandboxes.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Server/Server.h"
#include "Tests/Sandbox/SandboxTest.h"
#include "Tests/Server/RawClient.h"

namespace hlv::server {

using sandbox::nameOf;
using testing::RawClient;
using testing::requestOf;
using Json = nlohmann::ordered_json;
using Response = RawClient::Response;

/// Null for no body.
Json bodyOf(const Response& response);
int portOf(const std::string& url);
/// A header line of a key for requests that create something.
std::string keyHeader(const std::string& key);

/// `sandbox` looks at the server's default sandbox from beside it, as another process might.
class ServerTest : public sandbox::SandboxTest {
 protected:
  using Outcome = sandbox::CardAnswer;

  ~ServerTest() override;

  /// Opens the server on the test's store; again, where one is open. Requests are held for an hour.
  void serve(const std::function<void(ServerOptions&)>& change = {});
  ServerOptions options() const;
  /// The same, and a host that speaks to the server, with the guest signed in on both sides.
  void serveAndConnect();

  // Requests over connections of their own.

  Response askBackend(const std::string& request, const Json& body = {},
                      const std::string& headers = {}) const;
  /// With a key of the API.
  Response askProvider(const std::string& request, const Json& body = {},
                       const std::string& headers = {}) const;
  /// While this thread pumps the main queue, as the command does.
  Response askConsole(const std::string& request, const Json& body = {});
  /// The body, of a reply that has this status.
  static Json require(int status, const Response& response);
  /// A connection to the provider that has sent this request, and will not send another.
  RawClient listeningAt(const std::string& request) const;

  // The kit's operations over the connection, as calls that return.

  Outcome add(const sandbox::Typed& card, const std::string& useCase = "default");
  Outcome update(const NullableString& ID, sandbox::AddressFields address);
  Outcome remove(const NullableString& ID, const std::string& useCase = "default");
  bool synchronize();

  bool isQuiet() const override;

  static std::string guestPath(const std::string& who = email) { return "/v1/guests/" + who; }
  /// As the kit sends it to the backend.
  static Json newCard(const std::string& identifier = "ins_x");
  /// As somebody types it, for a user of the provider or one more instrument.
  static Json enteredCard(const sandbox::Typed& card = "visa");
  static Json newUser(const sandbox::Typed& card = "visa", const std::string& who = email);

  std::unique_ptr<Server> server;
  std::shared_ptr<client::RemoteHost> remote;
  /// On this side of the connection.
  std::shared_ptr<sandbox::Sandbox> local;

 private:
  std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager_;
};

}  // namespace hlv::server
