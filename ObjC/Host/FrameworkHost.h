// The host that is made of the host SDK's and the provider's own classes.
//
// Threading: any.
#pragma once

#include <memory>

#include "Host/Host.h"
#include "ObjC/Binding/Held.h"
#include "Platform/SharedSlot.h"

namespace hlv::objc {

/// Every question is one message to a class. Only the constants are kept, until the host's array of
/// address keys is another one: a host may fill it in late.
class FrameworkHost final : public Host {
 public:
  std::shared_ptr<const HLVSDKConstants> constants() override;
  std::shared_ptr<HLVSDKAPIManager> apiManager() override;
  std::shared_ptr<HLVSDKReachability> reachability() override;
  std::shared_ptr<HLVSDKGuest> currentGuest() override;
  NullableString cardBrandFromNumber(const NullableString& number) override;
  std::shared_ptr<HLVSDKUpdateGuestRequestInfo> makeUpdateGuestRequestInfo() override;
  void handleAssertWithMessage(const NullableString& message) override;
  void handleParameterAssert(const NullableString& parameter,
                             const NullableString& message) override;
  std::shared_ptr<HLVSDKLogger> remoteLogger() override;
  std::shared_ptr<HLVSDKLogger> consoleLogger() override;
  std::shared_ptr<HLVSDKAddCreditCardRequestInfo::Body> makeAddCreditCardRequestBody(
      const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
      const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) override;
  std::shared_ptr<HLVSession> activeSession() override;
  std::shared_ptr<HLVErrorFacade> makeErrorFacade() override;
  std::shared_ptr<PLVInAppClient> inAppClient() override;
  std::shared_ptr<PLVCreditCardPaymentInstrument> makeCreditCardPaymentInstrument(
      const NullableString& pan, const NullableString& expiryMonth,
      const NullableString& expiryYear, const NullableString& cvv,
      const NullableString& cardHolder) override;

 private:
  struct Constants {
    explicit Constants(NSArray* addressKeys) : keys(addressKeys) {}
    HLVSDKConstants texts;
    Held keys;
  };
  SharedSlot<Constants> constants_;
};

}  // namespace hlv::objc
