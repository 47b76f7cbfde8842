// A host and a provider that answer from many threads, as a plan says.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Tests/Stress/AnswerThreads.h"
#include "Tests/Support/ScriptedHost.h"

namespace hlv::testing {

/// A guest's address and token are the number of the operation that it takes part in; that is how a
/// service knows whose call it serves. How a call is answered depends on the seed, the operation
/// and the call, and on nothing else.
///
/// Threading: any.
class StressHost final : public ScriptedHost {
 public:
  struct Setting {
    std::uint32_t seed = 0;
    AnswerThreads* threads = nullptr;
    /// Called for each call that is never answered.
    std::function<void(std::size_t operation)> unanswered;
  };
  explicit StressHost(const Setting& setting);

  static std::shared_ptr<FakeGuest> guestOf(std::size_t operation, bool hasToken);

  std::shared_ptr<HLVSDKAPIManager> apiManager() override { return stressBackend_; }
  std::shared_ptr<PLVInAppClient> inAppClient() override { return stressProvider_; }
  // The scripted host writes down what these are asked, and for one thread.
  /// The guest of operation 0, which is nobody's.
  std::shared_ptr<HLVSDKGuest> currentGuest() override { return guest; }
  void handleAssertWithMessage(const NullableString&) override {}
  void handleParameterAssert(const NullableString&, const NullableString&) override {}
  std::shared_ptr<HLVSDKLogger> remoteLogger() override { return nullptr; }
  std::shared_ptr<HLVSDKLogger> consoleLogger() override { return nullptr; }
  std::shared_ptr<HLVSDKAddCreditCardRequestInfo::Body> makeAddCreditCardRequestBody(
      const std::shared_ptr<HLVSDKPaymentInstrument>&,
      const std::shared_ptr<HLVSDKPaymentBillingAddress>&) override {
    return nullptr;
  }
  std::shared_ptr<HLVErrorFacade> makeErrorFacade() override {
    return std::make_shared<FakeErrorFacade>();
  }

 private:
  const std::shared_ptr<HLVSDKAPIManager> stressBackend_;
  const std::shared_ptr<PLVInAppClient> stressProvider_;
};

}  // namespace hlv::testing
