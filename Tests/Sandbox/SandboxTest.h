// A sandbox on a store of its own, and the services' operations as calls that return.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Host/PaylevenFramework/PLVPaymentInstrument.h"
#include "Platform/Default/DefaultPlatform.h"
#include "Sandbox/Cards/TestCards.h"
#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/Sandbox.h"

namespace hlv::sandbox {

using Instrument = std::shared_ptr<PLVCreditCardPaymentInstrument>;
using Instruments = NullableList<PLVCreditCardPaymentInstrument>;
using Cards = NullableList<HLVSDKCreditCard>;
using TokenAnswer = std::tuple<NullableString, ErrorPtr>;
using ListAnswer = std::tuple<Instruments, ErrorPtr>;
using GuestAnswer = std::tuple<std::shared_ptr<HLVSDKGuest>, ErrorPtr>;
using CardsAnswer = std::tuple<Cards, ErrorPtr>;
using CardAnswer =
    std::tuple<std::shared_ptr<HLVSDKGuest>, std::shared_ptr<HLVSDKCreditCard>, ErrorPtr>;

/// A card by the name of a test card, or by its fields.
struct Typed : CardFields {
  Typed(const char* testCard) : CardFields(findTestCard(testCard)->fields) {}
  Typed(CardFields fields) : CardFields(std::move(fields)) {}
};

/// "domain code", or "none".
inline std::string nameOf(const ErrorPtr& error) {
  return error ? error->domain() + " " + std::to_string(error->code()) : "none";
}

class SandboxTest : public ::testing::Test {
 protected:
  inline static const std::string email = "guest@example.com";

  /// Makes an empty directory.
  SandboxTest() {
    if (!::mkdtemp(folder_.data())) throw std::runtime_error("no temporary folder");
  }
  ~SandboxTest() override {
    stop();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::string path(const std::string& name) const { return folder_ + "/" + name; }
  std::string storePath() const { return path("store"); }
  /// Of what is no file, nothing.
  static std::string contentOf(const std::string& path) {
    if (!std::filesystem::is_regular_file(path)) return "";
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  /// Opens the store, lets go of what was open before, registers with the provider and signs the
  /// guest in.
  void start(std::optional<std::uint64_t> seed = std::nullopt, bool logToConsole = false) {
    SandboxOptions options;
    options.storePath = storePath();
    options.seed = seed;
    options.logToConsole = logToConsole;
    sandbox = Sandbox::open(options).value();
    use(sandbox->host());
    ASSERT_TRUE(sandbox->signIn(email));
    guest = HLVSDKGuest::currentGuest();
  }
  /// Installs the host, takes its services, and registers with the provider.
  void use(const std::shared_ptr<Host>& host) {
    Host::install(host);
    backend = HLVSDKAPIManager::manager();
    provider = PLVInAppClient::sharedInstance();
    provider->registerWithAPIKey("key");
  }
  /// Lets go of everything that holds the store.
  void stop() {
    Host::install(nullptr);
    guest.reset(), backend.reset(), provider.reset(), sandbox.reset();
  }
  void arm(const std::string& operation, const std::string& kind,
           const std::function<void(Fault&)>& change = {}) {
    Fault fault;
    fault.operation = operationNamed(operation).value();
    fault.kind = faultKindNamed(kind).value();
    if (change) change(fault);
    EXPECT_EQ(sandbox->tester()->arm(fault).problem(), "");
  }
  /// Whether no service is busy.
  virtual bool isQuiet() const { return sandbox->isQuiet(); }
  void pumpUntilQuiet() {
    const auto platform = DefaultPlatform::shared();
    // What an answer posts to the main queue may send the next request.
    platform->runUntil([&] { return isQuiet() && platform->isIdle() && isQuiet(); });
  }

  /// The only answer to a call that is made with the completion it is given.
  template <class Answer>
  Answer answerTo(const auto& call) {
    const auto answers = std::make_shared<std::vector<Answer>>();
    call([answers](auto... results) { answers->emplace_back(std::move(results)...); });
    pumpUntilQuiet();
    EXPECT_EQ(answers->size(), 1U);
    return answers->empty() ? Answer() : answers->front();
  }

  TokenAnswer createToken(const Typed& card, const NullableString& useCase = "default") {
    return answerTo<TokenAnswer>([&](auto completion) {
      provider->createUserToken(email, newInstrument(card), useCase, completion);
    });
  }
  ErrorPtr addInstrument(const Typed& card, const NullableString& token,
                         const NullableString& useCase = "default") {
    return answerTo<ErrorPtr>([&](auto completion) {
      provider->addPaymentInstrument(newInstrument(card), token, useCase, completion);
    });
  }
  ListAnswer list(const NullableString& token, const NullableString& useCase = "default") {
    return answerTo<ListAnswer>(
        [&](auto completion) { provider->getPaymentInstrumentsList(token, useCase, completion); });
  }
  CardsAnswer fetchCards() {
    return answerTo<CardsAnswer>(
        [&](auto completion) { backend->fetchGuestCreditCards(guest, completion); });
  }
  CardAnswer addCard(const Typed& card, const std::shared_ptr<HLVSDKGuest>& owner,
                     const NullableString& identifier = "ins_x", AddressFields address = {}) {
    const auto entered = EnteredCard::make(card);
    entered->setExternalIdentifier(identifier);
    const auto request = HLVSDKAddCreditCardRequestInfo::initWithPaymentInstrument(
        entered, EnteredAddress::make(std::move(address)));
    return answerTo<CardAnswer>(
        [&](auto completion) { backend->addCreditCardForGuest(owner, request, completion); });
  }
  GuestAnswer deleteCard(const NullableString& ID, const std::shared_ptr<HLVSDKGuest>& owner) {
    return answerTo<GuestAnswer>(
        [&](auto completion) { backend->deleteCreditCardWithID(ID, owner, completion); });
  }

  static Instrument newInstrument(const CardFields& card) {
    return PLVPaymentInstrument::createCreditCardPaymentInstrumentWithPan(
        card.pan, card.expiryMonth, card.expiryYear, card.cvv, card.cardHolder);
  }

  std::shared_ptr<Sandbox> sandbox;
  std::shared_ptr<HLVSDKAPIManager> backend;
  std::shared_ptr<PLVInAppClient> provider;
  std::shared_ptr<HLVSDKGuest> guest;

 private:
  std::string folder_ = std::filesystem::temp_directory_path() / "paylevenkit-test-XXXXXX";
};

}  // namespace hlv::sandbox
