#include "Tests/Sandbox/SandboxTest.h"

#include <stdlib.h>

#include <cstdlib>

#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"
#include "Platform/Default/DefaultPlatform.h"
#include "Sandbox/Cards/Calendar.h"

namespace hlv::sandbox {

SandboxTest::SandboxTest() {
  Calendar::install([] { return YearMonth{2031, 7}; });
  if (const char* inherited = std::getenv(directoryVariable)) {
    directory_ = inherited;
    return;
  }
  auto pattern = (std::filesystem::temp_directory_path() / "sandbox-XXXXXX").string();
  directory_ = ::mkdtemp(pattern.data());
  ownsDirectory_ = true;
}

SandboxTest::~SandboxTest() {
  Host::install(nullptr);
  sandbox.reset();
  if (ownsDirectory_) std::filesystem::remove_all(directory_);
  Calendar::install({});
}

void SandboxTest::start(std::optional<std::uint64_t> seed) {
  SandboxOptions options;
  options.storePath = storePath();
  options.seed = seed;
  auto opened = Sandbox::open(options);
  ASSERT_TRUE(opened.sandbox) << opened.problem;
  sandbox = opened.sandbox;
  Host::install(sandbox->host());
  backend = HLVSDKAPIManager::manager();
  provider = PLVInAppClient::sharedInstance();
  provider->registerWithAPIKey("key");
  ASSERT_EQ(sandbox->signIn(email), "");
  guest = HLVSDKGuest::currentGuest();
}

void SandboxTest::arm(const std::string& operation, const std::string& kind,
                      const std::function<void(Fault&)>& change) {
  Fault fault;
  fault.operation = operation;
  fault.kind = kind;
  if (change) change(fault);
  ASSERT_EQ(sandbox->faults().arm(fault), "");
}

void SandboxTest::pumpUntilQuiet() {
  DefaultPlatform::shared()->runUntil([this] { return sandbox->isQuiet(); });
}

std::tuple<NullableString, ErrorPtr> SandboxTest::createToken(const std::string& testCard,
                                                              const NullableString& useCase) {
  return answerTo<NullableString, ErrorPtr>([&](auto completion) {
    provider->createUserToken(email, newInstrument(findTestCard(testCard)->fields), useCase,
                              completion);
  });
}

ErrorPtr SandboxTest::addInstrument(const std::string& testCard, const NullableString& token,
                                    const NullableString& useCase) {
  return std::get<0>(answerTo<ErrorPtr>([&](auto completion) {
    provider->addPaymentInstrument(newInstrument(findTestCard(testCard)->fields), token, useCase,
                                   completion);
  }));
}

std::tuple<Instruments, ErrorPtr> SandboxTest::list(const NullableString& token,
                                                    const NullableString& useCase) {
  return answerTo<Instruments, ErrorPtr>(
      [&](auto completion) { provider->getPaymentInstrumentsList(token, useCase, completion); });
}

ErrorPtr SandboxTest::removeInstrument(const Instrument& instrument, const NullableString& token,
                                       const NullableString& useCase) {
  return std::get<0>(answerTo<ErrorPtr>([&](auto completion) {
    provider->removePaymentInstrument(instrument, useCase, token, completion);
  }));
}

std::shared_ptr<EnteredCard> SandboxTest::enteredCard(const std::string& testCard) const {
  return EnteredCard::make(findTestCard(testCard)->fields);
}

Instrument SandboxTest::newInstrument(const CardFields& fields) const {
  return PLVPaymentInstrument::createCreditCardPaymentInstrumentWithPan(
      fields.pan, fields.expiryMonth, fields.expiryYear, fields.cvv, fields.cardHolder);
}

ErrorPtr SandboxTest::storeToken(const NullableString& token) {
  const auto request = HLVSDKUpdateGuestRequestInfo::make();
  request->setPaymentToken(token);
  return std::get<1>(answerTo<std::shared_ptr<HLVSDKGuest>, ErrorPtr>(
      [&](auto completion) { backend->updateCurrentGuestWithRequest(request, completion); }));
}

std::tuple<std::shared_ptr<HLVSDKGuest>, std::shared_ptr<HLVSDKCreditCard>, ErrorPtr>
SandboxTest::addCard(const std::string& testCard, const std::shared_ptr<HLVSDKGuest>& owner,
                     const NullableString& identifier, AddressFields address) {
  const auto card = enteredCard(testCard);
  card->setExternalIdentifier(identifier);
  const auto request = HLVSDKAddCreditCardRequestInfo::initWithPaymentInstrument(
      card, EnteredAddress::make(std::move(address)));
  return answerTo<std::shared_ptr<HLVSDKGuest>, std::shared_ptr<HLVSDKCreditCard>, ErrorPtr>(
      [&](auto completion) { backend->addCreditCardForGuest(owner, request, completion); });
}

std::tuple<std::shared_ptr<HLVSDKGuest>, ErrorPtr> SandboxTest::deleteCard(
    const NullableString& ID, const std::shared_ptr<HLVSDKGuest>& owner) {
  return answerTo<std::shared_ptr<HLVSDKGuest>, ErrorPtr>(
      [&](auto completion) { backend->deleteCreditCardWithID(ID, owner, completion); });
}

void SandboxTest::addFirstCard(const std::string& testCard) {
  const auto token = std::get<0>(createToken(testCard));
  const auto instruments = std::get<0>(list(token));
  ASSERT_TRUE(instruments && !instruments->empty());
  ASSERT_EQ(nameOf(storeToken(token)), "none");
  const auto identifier = instruments->back()->identifier();
  ASSERT_EQ(nameOf(std::get<2>(addCard(testCard, guest, identifier))), "none");
}

std::string nameOf(const ErrorPtr& error) {
  return error ? error->domain() + " " + std::to_string(error->code()) : "none";
}

}  // namespace hlv::sandbox
