// The one object through which an app supplies the host SDK and the payment provider.
//
// Threading: install it before the kit is enabled; its members are called from any thread.
#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "Values/Export.h"
#include "Values/NullableString.h"
#include "Values/Object.h"

namespace hlv {

class HLVErrorFacade;
class HLVSDKAPIManager;
class HLVSDKAddCreditCardRequestBody;
class HLVSDKGuest;
class HLVSDKLogger;
class HLVSDKPaymentBillingAddress;
class HLVSDKPaymentInstrument;
class HLVSDKReachability;
class HLVSDKUpdateGuestRequestInfo;
class HLVSession;
class PLVCreditCardPaymentInstrument;
class PLVInAppClient;
struct HLVSDKConstants;

/// Every class operation and constant of the classes in this folder asks the installed host. While
/// none is installed they return null, and the first one writes so to standard error. The contract
/// of a member is that of the operation that asks it; docs/host.md lists them all.
///
/// Implementations must take calls from any thread, hold no lock meanwhile, and may return null
/// wherever a pointer or a missing string is returned.
class HLV_EXPORT Host : public Object {
 public:
  /// The installed host, or null.
  static std::shared_ptr<Host> current();
  /// Replaces the host; null removes it.
  static void install(std::shared_ptr<Host> host);

  /// Asks the installed host, or returns the zero of the result.
  template <class Question, class... Arguments>
  static auto ask(Question question, Arguments&&... arguments) {
    using Result = std::decay_t<std::invoke_result_t<Question, Host&, Arguments...>>;
    if (const auto host = current()) {
      return Result(std::invoke(question, *host, std::forward<Arguments>(arguments)...));
    }
    sayOnceThatNoneIsInstalled();
    return Result();
  }

  // The host SDK's core.
  virtual std::shared_ptr<const HLVSDKConstants> constants() = 0;
  virtual std::shared_ptr<HLVSDKAPIManager> apiManager() = 0;
  virtual std::shared_ptr<HLVSDKReachability> reachability() = 0;
  virtual std::shared_ptr<HLVSDKGuest> currentGuest() = 0;
  virtual NullableString cardBrandFromNumber(const NullableString& number) = 0;
  virtual std::shared_ptr<HLVSDKUpdateGuestRequestInfo> makeUpdateGuestRequestInfo() = 0;
  virtual void handleAssertWithMessage(const NullableString& message) = 0;
  virtual void handleParameterAssert(const NullableString& parameter,
                                     const NullableString& message) = 0;
  virtual std::shared_ptr<HLVSDKLogger> remoteLogger() = 0;
  virtual std::shared_ptr<HLVSDKLogger> consoleLogger() = 0;

  // The host SDK's payments, authentication and errors.
  virtual std::shared_ptr<HLVSDKAddCreditCardRequestBody> makeAddCreditCardRequestBody(
      const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
      const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) = 0;
  virtual std::shared_ptr<HLVSession> activeSession() = 0;
  virtual std::shared_ptr<HLVErrorFacade> makeErrorFacade() = 0;

  // The payment provider.
  virtual std::shared_ptr<PLVInAppClient> inAppClient() = 0;
  virtual std::shared_ptr<PLVCreditCardPaymentInstrument> makeCreditCardPaymentInstrument(
      const NullableString& pan, const NullableString& expiryMonth,
      const NullableString& expiryYear, const NullableString& cvv,
      const NullableString& cardHolder) = 0;

 private:
  static void sayOnceThatNoneIsInstalled();
};

}  // namespace hlv
