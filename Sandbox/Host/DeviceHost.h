// What of a host is on the device, wherever its services are.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"
#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"
#include "Host/Host.h"

namespace hlv::sandbox {

struct Parts;

/// The texts of every sandbox's host. Threading: any. Never null.
std::shared_ptr<const HLVSDKConstants> sandboxConstants();

/// A sandbox's own reachability, session, loggers, assertions and records. The services and the
/// guests are left to what derives from it.
///
/// Threading: any.
class DeviceHost : public Host {
 public:
  std::shared_ptr<const HLVSDKConstants> constants() override;
  std::shared_ptr<HLVSDKReachability> reachability() override;
  NullableString cardBrandFromNumber(const NullableString& number) override;
  std::shared_ptr<HLVSDKUpdateGuestRequestInfo> makeUpdateGuestRequestInfo() override;
  void handleAssertWithMessage(const NullableString& message) override;
  void handleParameterAssert(const NullableString& parameter,
                             const NullableString& message) override;
  std::shared_ptr<HLVSDKLogger> remoteLogger() override;
  std::shared_ptr<HLVSDKLogger> consoleLogger() override;

  std::shared_ptr<HLVSDKAddCreditCardRequestBody> makeAddCreditCardRequestBody(
      const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
      const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) override;
  std::shared_ptr<HLVSession> activeSession() override;
  std::shared_ptr<HLVErrorFacade> makeErrorFacade() override;

  std::shared_ptr<PLVCreditCardPaymentInstrument> makeCreditCardPaymentInstrument(
      const NullableString& pan, const NullableString& expiryMonth,
      const NullableString& expiryYear, const NullableString& cvv,
      const NullableString& cardHolder) override;

 protected:
  explicit DeviceHost(std::shared_ptr<Parts> parts) : parts_(std::move(parts)) {}

  const std::shared_ptr<Parts> parts_;

 private:
  void report(const std::string& assertion);
};

}  // namespace hlv::sandbox
