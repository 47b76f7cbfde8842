// A sandbox on a store of its own, and the services' operations as calls that return.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Host/HLVSDKCoreKit/HLVSDKUpdateGuestRequestInfo.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Host/PaylevenFramework/PLVPaymentInstrument.h"
#include "Sandbox/ErrorCodes.h"
#include "Sandbox/Sandbox.h"
#include "Sandbox/TestCards.h"

namespace hlv::sandbox {

using Instrument = std::shared_ptr<PLVCreditCardPaymentInstrument>;
using Instruments = NullableList<PLVCreditCardPaymentInstrument>;
using Cards = NullableList<HLVSDKCreditCard>;

class SandboxTest : public ::testing::Test {
 protected:
  inline static const std::string email = "guest@example.com";

  /// Names the directory for a test that runs on in a process of its own.
  static constexpr const char* directoryVariable = "SANDBOX_TEST_DIRECTORY";

  /// Stops the calendar and makes an empty directory.
  SandboxTest();
  ~SandboxTest() override;

  std::string path(const std::string& name) const { return directory_ / name; }
  std::string storePath() const { return path("store"); }

  /// Opens the store, lets go of what was open before, registers with the provider and signs the
  /// guest in.
  void start(std::optional<std::uint64_t> seed = std::nullopt);
  void arm(const std::string& operation, const std::string& kind,
           const std::function<void(Fault&)>& change = {});
  void pumpUntilQuiet();

  /// Makes one call with the completion it is given.
  template <class... Results>
  using Call = std::type_identity_t<std::function<void(std::function<void(Results...)>)>>;

  /// Every answer that one call brought.
  template <class... Results>
  std::vector<std::tuple<Results...>> answersTo(const Call<Results...>& call) {
    auto answers = std::make_shared<std::vector<std::tuple<Results...>>>();
    call([answers](Results... results) { answers->emplace_back(std::move(results)...); });
    pumpUntilQuiet();
    return *answers;
  }
  template <class... Results>
  std::tuple<Results...> answerTo(const Call<Results...>& call) {
    const auto answers = answersTo<Results...>(call);
    EXPECT_EQ(answers.size(), 1U);
    return answers.empty() ? std::tuple<Results...>() : answers.front();
  }

  std::tuple<NullableString, ErrorPtr> createToken(const std::string& testCard,
                                                   const NullableString& useCase = "default");
  ErrorPtr addInstrument(const std::string& testCard, const NullableString& token,
                         const NullableString& useCase = "default");
  std::tuple<Instruments, ErrorPtr> list(const NullableString& token,
                                         const NullableString& useCase = "default");
  ErrorPtr removeInstrument(const Instrument& instrument, const NullableString& token,
                            const NullableString& useCase = "default");

  std::shared_ptr<EnteredCard> enteredCard(const std::string& testCard) const;
  Instrument newInstrument(const CardFields& fields) const;
  ErrorPtr storeToken(const NullableString& token);
  std::tuple<std::shared_ptr<HLVSDKGuest>, std::shared_ptr<HLVSDKCreditCard>, ErrorPtr> addCard(
      const std::string& testCard, const std::shared_ptr<HLVSDKGuest>& guest,
      const NullableString& identifier = "ins_x", AddressFields address = {});
  std::tuple<std::shared_ptr<HLVSDKGuest>, ErrorPtr> deleteCard(
      const NullableString& ID, const std::shared_ptr<HLVSDKGuest>& guest);
  /// What the kit does with a guest's first card.
  void addFirstCard(const std::string& testCard);

  std::shared_ptr<Sandbox> sandbox;
  std::shared_ptr<HLVSDKAPIManager> backend;
  std::shared_ptr<PLVInAppClient> provider;
  std::shared_ptr<HLVSDKGuest> guest;

 private:
  std::filesystem::path directory_;
  bool ownsDirectory_ = false;
};

/// "domain code", or "none".
std::string nameOf(const ErrorPtr& error);

}  // namespace hlv::sandbox
