#include "Tests/Server/ServerTest.h"

#include <thread>

#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Platform/Default/DefaultPlatform.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"
#include "Sandbox/JSON/InstrumentRecords.h"

namespace hlv::server {
namespace {

constexpr const char* apiKey = "X-API-Key: key\r\n";

std::string textOf(const Json& body) { return body.is_null() ? "" : body.dump(); }

}  // namespace

Json bodyOf(const Response& response) {
  return response.body.empty() ? Json() : Json::parse(response.body);
}

int portOf(const std::string& url) { return std::stoi(url.substr(url.rfind(':') + 1)); }

std::string keyHeader(const std::string& key) { return "Idempotency-Key: " + key + "\r\n"; }

ServerTest::~ServerTest() {
  manager_.reset(), remote.reset(), local.reset();
  server.reset();
  stop();
}

ServerOptions ServerTest::options() const {
  ServerOptions options;
  options.storePath = storePath();
  options.loops = 2;
  options.listening.limits.answerTime = std::chrono::hours(1);
  return options;
}

void ServerTest::serve(const std::function<void(ServerOptions&)>& change) {
  server.reset();
  auto wanted = options();
  if (change) change(wanted);
  auto opened = Server::open(std::move(wanted));
  ASSERT_TRUE(opened) << opened.problem();
  server = std::move(*opened);
  if (!sandbox) start();
}

void ServerTest::serveAndConnect() {
  serve();
  sandbox::SandboxOptions localOptions;
  localOptions.storePath = path("local");
  local = sandbox::Sandbox::open(localOptions).value();
  remote = client::RemoteHost::open(local, {server->backendURL(), server->providerURL()});
  use(remote);
  ASSERT_EQ(nameOf(remote->signIn(email)), "none");
  ASSERT_TRUE(local->signIn(email));
  guest = HLVSDKGuest::currentGuest();
  manager_ = HLVSDKPaylevenPaymentInstrumentManager::initWithAPIManager(
      backend, provider, HLVSDKReachability::sharedReachability());
}

Response ServerTest::askBackend(const std::string& request, const Json& body,
                                const std::string& headers) const {
  return testing::ask(portOf(server->backendURL()), request, textOf(body), headers);
}

Response ServerTest::askProvider(const std::string& request, const Json& body,
                                 const std::string& headers) const {
  return testing::ask(portOf(server->providerURL()), request, textOf(body), apiKey + headers);
}

Response ServerTest::askConsole(const std::string& request, const Json& body) {
  const auto platform = DefaultPlatform::shared();
  Response response;
  bool hasCome = false;
  std::thread asking([&] {
    response = testing::ask(portOf(server->consoleURL()), request, textOf(body));
    platform->mainQueue()->async([&] { hasCome = true; });
  });
  platform->runUntil([&] {
    server->completeFinishedOperations();
    return hasCome;
  });
  asking.join();
  return response;
}

Json ServerTest::require(int status, const Response& response) {
  EXPECT_EQ(response.status, status) << response.code();
  return bodyOf(response);
}

RawClient ServerTest::listeningAt(const std::string& request) const {
  RawClient client(portOf(server->providerURL()));
  client.send(requestOf(request, "", apiKey));
  return client;
}

bool ServerTest::isQuiet() const { return sandbox->isQuiet() && (!remote || remote->isQuiet()); }

ServerTest::Outcome ServerTest::add(const sandbox::Typed& card, const std::string& useCase) {
  auto fields = card;
  fields.useCase = useCase;
  const auto entered = sandbox::EnteredCard::make(fields);
  return answerTo<Outcome>([&](auto completion) {
    manager_->addPaymentInstrument(entered, sandbox::EnteredAddress::make({}), guest, completion);
  });
}

ServerTest::Outcome ServerTest::update(const NullableString& ID, sandbox::AddressFields address) {
  return answerTo<Outcome>([&](auto completion) {
    manager_->updatePaymentInstrument(ID, sandbox::EnteredAddress::make(std::move(address)), guest,
                                      completion);
  });
}

ServerTest::Outcome ServerTest::remove(const NullableString& ID, const std::string& useCase) {
  const auto [owner, error] = answerTo<sandbox::GuestAnswer>([&](auto completion) {
    manager_->deletePaymentInstrumentWithID(ID, useCase, guest, completion);
  });
  return {owner, nullptr, error};
}

bool ServerTest::synchronize() {
  const auto synchronizer =
      HLVSDKPaylevenPaymentInstrumentsSynchronizer::initWithAPIManager(backend, provider);
  const auto [isDone, error] = answerTo<std::tuple<bool, ErrorPtr>>([&](auto completion) {
    synchronizer->synchronizePaymentInstrumentsForGuest(guest, completion);
  });
  EXPECT_EQ(nameOf(error), "none");
  return isDone;
}

Json ServerTest::newCard(const std::string& identifier) {
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

Json ServerTest::enteredCard(const sandbox::Typed& card) {
  return {{"credit_card", sandbox::newCardJson(*sandbox::EnteredCard::make(card))}};
}

Json ServerTest::newUser(const sandbox::Typed& card, const std::string& who) {
  auto user = enteredCard(card);
  user["email"] = who;
  user["use_case"] = "default";
  return user;
}

}  // namespace hlv::server
