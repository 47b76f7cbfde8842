// The host that an app installs to run against the sandbox. Private to the sandbox.
#pragma once

#include <memory>

#include "Host/Host.h"
#include "Sandbox/Backend/BackendClient.h"
#include "Sandbox/Backend/Guest.h"
#include "Sandbox/Calls/Journal.h"
#include "Sandbox/Calls/Reachability.h"
#include "Sandbox/Calls/ReplyQueue.h"
#include "Sandbox/Logging/Logger.h"
#include "Sandbox/Provider/ProviderClient.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {

/// Everything that runs on one store.
///
/// Threading: any.
struct Parts {
  Parts(std::shared_ptr<Store> openedStore, LogSink remoteSink, LogSink consoleSink);

  const std::shared_ptr<Store> store;
  const std::shared_ptr<Journal> journal;
  const std::shared_ptr<Reachability> reachability;
  const std::shared_ptr<ReplyQueue> answers;
  const std::shared_ptr<Guests> guests;
  const std::shared_ptr<BackendClient> backend;
  const std::shared_ptr<ProviderClient> provider;
  const std::shared_ptr<Logger> remoteLog;
  const std::shared_ptr<Logger> consoleLog;
};

/// Threading: any.
class SandboxHost final : public Host {
 public:
  explicit SandboxHost(std::shared_ptr<Parts> parts) : parts_(std::move(parts)) {}

  std::shared_ptr<const HLVSDKConstants> constants() override;
  std::shared_ptr<HLVSDKAPIManager> apiManager() override { return parts_->backend; }
  std::shared_ptr<HLVSDKReachability> reachability() override { return parts_->reachability; }
  std::shared_ptr<HLVSDKGuest> currentGuest() override;
  NullableString cardBrandFromNumber(const NullableString& number) override;
  std::shared_ptr<HLVSDKUpdateGuestRequestInfo> makeUpdateGuestRequestInfo() override;
  void handleAssertWithMessage(const NullableString& message) override;
  void handleParameterAssert(const NullableString& parameter,
                             const NullableString& message) override;
  std::shared_ptr<HLVSDKLogger> remoteLogger() override { return parts_->remoteLog; }
  std::shared_ptr<HLVSDKLogger> consoleLogger() override { return parts_->consoleLog; }

  std::shared_ptr<HLVSDKAddCreditCardRequestInfo::Body> makeAddCreditCardRequestBody(
      const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
      const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) override;
  std::shared_ptr<HLVSession> activeSession() override;
  std::shared_ptr<HLVErrorFacade> makeErrorFacade() override;

  std::shared_ptr<PLVInAppClient> inAppClient() override { return parts_->provider; }
  std::shared_ptr<PLVCreditCardPaymentInstrument> makeCreditCardPaymentInstrument(
      const NullableString& pan, const NullableString& expiryMonth,
      const NullableString& expiryYear, const NullableString& cvv,
      const NullableString& cardHolder) override;

 private:
  void report(const std::string& assertion);

  const std::shared_ptr<Parts> parts_;
};

}  // namespace hlv::sandbox
