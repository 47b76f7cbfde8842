#include "Tests/Client/ClientTest.h"

#include <cstdlib>

#include "Platform/Default/DefaultPlatform.h"
#include "Sandbox/Cards/TestCards.h"

namespace hlv::client {

ClientTest::ClientTest() {
  auto name = (std::filesystem::temp_directory_path() / "client-test-XXXXXX").string();
  folder_ = ::mkdtemp(name.data());
  sandbox::SandboxOptions options;
  options.storePath = folder_ / "local";
  local = sandbox::Sandbox::open(options).value();
}

ClientTest::~ClientTest() {
  remote.reset(), local.reset();
  std::filesystem::remove_all(folder_);
}

void ClientTest::connect(const std::string& backendURL, const std::string& providerURL,
                         std::chrono::milliseconds timeout) {
  remote = RemoteHost::open(local, {backendURL, providerURL, timeout});
  ASSERT_TRUE(local->signIn(email));
  remote->inAppClient()->registerWithAPIKey("key");
}

void ClientTest::settle() {
  const auto platform = DefaultPlatform::shared();
  platform->runUntil([&] { return remote->isQuiet() && platform->isIdle() && remote->isQuiet(); });
}

ClientTest::Cards ClientTest::fetchCards() {
  return only<Cards>([&](auto completion) {
    remote->apiManager()->fetchGuestCreditCards(remote->currentGuest(), completion);
  });
}

ClientTest::Instruments ClientTest::listInstruments() {
  return only<Instruments>([&](auto completion) {
    remote->inAppClient()->getPaymentInstrumentsList("tok", "default", completion);
  });
}

ErrorPtr ClientTest::addInstrument() {
  const auto& card = sandbox::findTestCard("visa")->fields;
  return std::get<0>(only<std::tuple<ErrorPtr>>([&](auto completion) {
    remote->inAppClient()->addPaymentInstrument(
        remote->makeCreditCardPaymentInstrument(card.pan, card.expiryMonth, card.expiryYear,
                                                card.cvv, card.cardHolder),
        "tok", "default", completion);
  }));
}

}  // namespace hlv::client
