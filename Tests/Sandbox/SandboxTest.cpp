#include "Tests/Sandbox/SandboxTest.h"

#include "Host/HLVSDKCoreKit/HLVSDKUpdateGuestRequestInfo.h"
#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"
#include "Platform/Default/DefaultPlatform.h"
#include "Sandbox/Cards/Calendar.h"

namespace hlv::sandbox {
namespace {

Instrument newInstrument(const CardFields& card) {
  return PLVPaymentInstrument::createCreditCardPaymentInstrumentWithPan(
      card.pan, card.expiryMonth, card.expiryYear, card.cvv, card.cardHolder);
}

}  // namespace

SandboxTest::SandboxTest() {
  Calendar::install([] { return std::chrono::year(2031) / 7; });
}

SandboxTest::~SandboxTest() {
  stop();
  Calendar::install({});
}

void SandboxTest::start(std::optional<std::uint64_t> seed, bool logToConsole) {
  SandboxOptions options;
  options.storePath = storePath();
  options.seed = seed;
  options.logToConsole = logToConsole;
  sandbox = Sandbox::open(options).value();
  use(sandbox->host());
  ASSERT_TRUE(sandbox->signIn(email));
  guest = HLVSDKGuest::currentGuest();
}

void SandboxTest::use(const std::shared_ptr<Host>& host) {
  Host::install(host);
  backend = HLVSDKAPIManager::manager();
  provider = PLVInAppClient::sharedInstance();
  provider->registerWithAPIKey("key");
}

void SandboxTest::stop() {
  Host::install(nullptr);
  guest.reset(), backend.reset(), provider.reset(), sandbox.reset();
}

void SandboxTest::arm(const std::string& operation, const std::string& kind,
                      const std::function<void(Fault&)>& change) {
  Fault fault;
  fault.operation = operationNamed(operation).value();
  fault.kind = faultKindNamed(kind).value();
  if (change) change(fault);
  EXPECT_EQ(sandbox->tester()->arm(fault).problem(), "");
}

void SandboxTest::pumpUntilQuiet() {
  const auto platform = DefaultPlatform::shared();
  // What an answer posts to the main queue may send the next request.
  platform->runUntil([&] { return isQuiet() && platform->isIdle() && isQuiet(); });
}

SandboxTest::Places SandboxTest::leftBy(const Sandbox& sandbox, const std::string& path) {
  std::string journal;
  for (const auto& operation : sandbox.journal().last(1000)) {
    journal += operation.name + "\n";
    for (const auto& event : operation.events) journal += event.what + " " + event.result + "\n";
  }
  return {{"journal", journal},
          {"log", contentOf(path + ".log")},
          {"store", contentOf(path)},
          {"WAL", contentOf(path + "-wal")}};
}

TokenAnswer SandboxTest::createToken(const Typed& card, const NullableString& useCase) {
  return answerTo<TokenAnswer>([&](auto completion) {
    provider->createUserToken(email, newInstrument(card), useCase, completion);
  });
}

ErrorPtr SandboxTest::addInstrument(const Typed& card, const NullableString& token,
                                    const NullableString& useCase) {
  return answerTo<ErrorPtr>([&](auto completion) {
    provider->addPaymentInstrument(newInstrument(card), token, useCase, completion);
  });
}

ListAnswer SandboxTest::list(const NullableString& token, const NullableString& useCase) {
  return answerTo<ListAnswer>(
      [&](auto completion) { provider->getPaymentInstrumentsList(token, useCase, completion); });
}

ErrorPtr SandboxTest::removeInstrument(const Instrument& instrument, const NullableString& token,
                                       const NullableString& useCase) {
  return answerTo<ErrorPtr>([&](auto completion) {
    provider->removePaymentInstrument(instrument, useCase, token, completion);
  });
}

GuestAnswer SandboxTest::storeToken(const NullableString& token) {
  const auto request = HLVSDKUpdateGuestRequestInfo::make();
  request->setPaymentToken(token);
  return answerTo<GuestAnswer>(
      [&](auto completion) { backend->updateCurrentGuestWithRequest(request, completion); });
}

CardsAnswer SandboxTest::fetchCards() {
  return answerTo<CardsAnswer>(
      [&](auto completion) { backend->fetchGuestCreditCards(guest, completion); });
}

CardAnswer SandboxTest::addCard(const Typed& card, const std::shared_ptr<HLVSDKGuest>& owner,
                                const NullableString& identifier, AddressFields address) {
  const auto entered = EnteredCard::make(card);
  entered->setExternalIdentifier(identifier);
  const auto request = HLVSDKAddCreditCardRequestInfo::initWithPaymentInstrument(
      entered, EnteredAddress::make(std::move(address)));
  return answerTo<CardAnswer>(
      [&](auto completion) { backend->addCreditCardForGuest(owner, request, completion); });
}

GuestAnswer SandboxTest::deleteCard(const NullableString& ID,
                                    const std::shared_ptr<HLVSDKGuest>& owner) {
  return answerTo<GuestAnswer>(
      [&](auto completion) { backend->deleteCreditCardWithID(ID, owner, completion); });
}

std::string nameOf(const ErrorPtr& error) {
  return error ? error->domain() + " " + std::to_string(error->code()) : "none";
}

}  // namespace hlv::sandbox
