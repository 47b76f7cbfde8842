// A host and a provider that do nothing until the test answers, and can record what they get.
//
// Threading: one thread.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Host/Halvo_Authentication/HLVSession.h"
#include "Host/Host.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Tests/Support/FakeErrors.h"
#include "Tests/Support/FakeRecords.h"
#include "Tests/Support/Held.h"

namespace hlv::testing {

/// What happened, one line each, in order.
using Trace = std::vector<std::string>;

class ScriptedBackend final : public HLVSDKAPIManager {
 public:
  explicit ScriptedBackend(Trace* trace) : trace_(trace) {}

  Held<HLVSDKGuestCompletion> guestUpdates, deletions;
  Held<HLVSDKGuestCardCompletion> cardAdds, cardUpdates;
  Held<HLVSDKCreditCardsCompletion> cardFetches;
  /// What the last add-card and update-card calls carried, if there is a trace.
  std::shared_ptr<HLVSDKAddCreditCardRequestInfo> lastAddRequest;
  Dictionary lastAddress;

  void updateCurrentGuestWithRequest(const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
                                     HLVSDKGuestCompletion completion) override;
  void addCreditCardForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                             const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& requestInfo,
                             HLVSDKGuestCardCompletion completion) override;
  void deleteCreditCardWithID(const NullableString& ID, const std::shared_ptr<HLVSDKGuest>& guest,
                              HLVSDKGuestCompletion completion) override;
  void updateCreditCard(const NullableString& ID, const Dictionary& address,
                        const std::shared_ptr<HLVSDKGuest>& guest,
                        HLVSDKGuestCardCompletion completion) override;
  void fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                             HLVSDKCreditCardsCompletion completion) override;

 private:
  Trace* const trace_;
};

class ScriptedProvider final : public PLVInAppClient {
 public:
  explicit ScriptedProvider(Trace* trace) : trace_(trace) {}

  Held<PLVUserTokenCompletion> tokens;
  Held<PLVErrorCompletion> adds, removals;
  Held<PLVPaymentInstrumentsCompletion> lists;

  void registerWithAPIKey(const NullableString& key) override;
  void createUserToken(const NullableString& email,
                       const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                       const NullableString& useCase, PLVUserTokenCompletion completion) override;
  void addPaymentInstrument(const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                            const NullableString& userToken, const NullableString& useCase,
                            PLVErrorCompletion completion) override;
  void getPaymentInstrumentsList(const NullableString& userToken, const NullableString& useCase,
                                 PLVPaymentInstrumentsCompletion completion) override;
  void removePaymentInstrument(const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                               const NullableString& useCase, const NullableString& userToken,
                               PLVErrorCompletion completion) override;

 private:
  Trace* const trace_;
};

struct ScriptedReachability final : HLVSDKReachability {
  std::int64_t state = 1;
  /// Where the question is written down, if anywhere.
  Trace* trace = nullptr;
  std::int64_t currentState() const override {
    if (trace) trace->push_back("network asked");
    return state;
  }
};

struct ScriptedSession final : HLVSession {
  bool authorized = true;
  bool isAuthorized() const override { return authorized; }
};

enum class Recording { on, off };

class ScriptedHost : public Host {
 private:
  Trace* const trace_;

 public:
  Trace trace;
  const std::shared_ptr<ScriptedBackend> backend = std::make_shared<ScriptedBackend>(trace_);
  const std::shared_ptr<ScriptedProvider> provider = std::make_shared<ScriptedProvider>(trace_);
  const std::shared_ptr<ScriptedReachability> network = std::make_shared<ScriptedReachability>();
  std::shared_ptr<ScriptedSession> session = std::make_shared<ScriptedSession>();
  std::shared_ptr<HLVSDKGuest> guest;
  /// The host's add-card body and its own verdict; no body makes the base initialiser fail.
  std::shared_ptr<Dictionary> requestBody;
  ErrorPtr requestError;
  /// What the last request was made of; only to compare with.
  const void* requestedCard = nullptr;
  const void* requestedAddress = nullptr;
  /// The provider value that the last request was marked with.
  std::int64_t requestProvider = -1;
  const std::shared_ptr<HLVSDKConstants> texts;

  explicit ScriptedHost(Recording recording = Recording::on);

  /// Frees every callback that still waits.
  void dropEverything();
  /// The lines since the last call, joined.
  std::string takeTrace();

  std::shared_ptr<const HLVSDKConstants> constants() override { return texts; }
  std::shared_ptr<HLVSDKAPIManager> apiManager() override { return backend; }
  std::shared_ptr<HLVSDKReachability> reachability() override { return network; }
  std::shared_ptr<HLVSDKGuest> currentGuest() override;
  NullableString cardBrandFromNumber(const NullableString& number) override;
  std::shared_ptr<HLVSDKUpdateGuestRequestInfo> makeUpdateGuestRequestInfo() override;
  void handleAssertWithMessage(const NullableString& message) override;
  void handleParameterAssert(const NullableString& parameter,
                             const NullableString& message) override;
  std::shared_ptr<HLVSDKLogger> remoteLogger() override { return remoteLogger_; }
  std::shared_ptr<HLVSDKLogger> consoleLogger() override { return consoleLogger_; }
  std::shared_ptr<HLVSDKAddCreditCardRequestInfo::Body> makeAddCreditCardRequestBody(
      const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
      const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) override;
  std::shared_ptr<HLVSession> activeSession() override { return session; }
  std::shared_ptr<HLVErrorFacade> makeErrorFacade() override {
    return std::make_shared<FakeErrorFacade>(trace_);
  }
  std::shared_ptr<PLVInAppClient> inAppClient() override { return provider; }
  std::shared_ptr<PLVCreditCardPaymentInstrument> makeCreditCardPaymentInstrument(
      const NullableString& pan, const NullableString& expiryMonth,
      const NullableString& expiryYear, const NullableString& cvv,
      const NullableString& cardHolder) override;

 private:
  const std::shared_ptr<HLVSDKLogger> remoteLogger_, consoleLogger_;
  const std::shared_ptr<HLVSDKAddCreditCardRequestInfo::Body> body_;
};

}  // namespace hlv::testing
