// A sandbox on a store of its own, and the services' operations as calls that return.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Host/PaylevenFramework/PLVPaymentInstrument.h"
#include "Sandbox/Cards/TestCards.h"
#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/Sandbox.h"
#include "Tests/Sandbox/TestFolder.h"

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

class SandboxTest : public ::testing::Test {
 protected:
  inline static const std::string email = "guest@example.com";

  /// Stops the calendar and makes an empty directory.
  SandboxTest();
  ~SandboxTest() override;

  std::string path(const std::string& name) const { return folder_.path() / name; }
  std::string storePath() const { return path("store"); }
  static std::string contentOf(const std::string& path) { return testing::contentOf(path); }

  /// Opens the store, lets go of what was open before, registers with the provider and signs the
  /// guest in.
  void start(std::optional<std::uint64_t> seed = std::nullopt, bool logToConsole = false);
  /// Installs the host, takes its services, and registers with the provider.
  void use(const std::shared_ptr<Host>& host);
  /// Lets go of everything that holds the store.
  void stop();
  void arm(const std::string& operation, const std::string& kind,
           const std::function<void(Fault&)>& change = {});
  /// Whether no service is busy.
  virtual bool isQuiet() const { return sandbox->isQuiet(); }
  void pumpUntilQuiet();

  /// What a sandbox leaves, by where it stands, while its store is open and so has a write-ahead
  /// log.
  using Places = std::vector<std::pair<std::string, std::string>>;
  static Places leftBy(const Sandbox& sandbox, const std::string& path);

  /// The only answer to a call that is made with the completion it is given.
  template <class Answer>
  Answer answerTo(const auto& call) {
    const auto answers = std::make_shared<std::vector<Answer>>();
    call([answers](auto... results) { answers->emplace_back(std::move(results)...); });
    pumpUntilQuiet();
    EXPECT_EQ(answers->size(), 1U);
    return answers->empty() ? Answer() : answers->front();
  }

  TokenAnswer createToken(const Typed& card, const NullableString& useCase = "default");
  ErrorPtr addInstrument(const Typed& card, const NullableString& token,
                         const NullableString& useCase = "default");
  ListAnswer list(const NullableString& token, const NullableString& useCase = "default");
  ErrorPtr removeInstrument(const Instrument& instrument, const NullableString& token,
                            const NullableString& useCase = "default");
  GuestAnswer storeToken(const NullableString& token);
  CardsAnswer fetchCards();
  CardAnswer addCard(const Typed& card, const std::shared_ptr<HLVSDKGuest>& owner,
                     const NullableString& identifier = "ins_x", AddressFields address = {});
  GuestAnswer deleteCard(const NullableString& ID, const std::shared_ptr<HLVSDKGuest>& owner);

  std::shared_ptr<Sandbox> sandbox;
  std::shared_ptr<HLVSDKAPIManager> backend;
  std::shared_ptr<PLVInAppClient> provider;
  std::shared_ptr<HLVSDKGuest> guest;

 private:
  const testing::TestFolder folder_;
};

/// "domain code", or "none".
std::string nameOf(const ErrorPtr& error);

}  // namespace hlv::sandbox
