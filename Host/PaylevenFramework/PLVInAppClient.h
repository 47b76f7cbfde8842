// The payment provider's client.
#pragma once

#include <functional>
#include <memory>

#include "Host/Host.h"
#include "Values/Error.h"
#include "Values/Export.h"
#include "Values/List.h"
#include "Values/NullableString.h"
#include "Values/Object.h"

namespace hlv {

/// (user token, error).
using PLVUserTokenCompletion = std::function<void(NullableString, ErrorPtr)>;
/// (error).
using PLVErrorCompletion = std::function<void(ErrorPtr)>;
/// (instruments, error). The list may be missing.
using PLVPaymentInstrumentsCompletion =
    std::function<void(NullableList<PLVCreditCardPaymentInstrument>, ErrorPtr)>;

/// Implementations must
/// - take every operation from any thread, several at once, and skip an empty completion;
/// - reply to each call once, on any thread, inside the call or later. The kit takes one reply a
///   call and ignores further ones;
/// - give no error on success, and free a callback that will never be called.
class HLV_EXPORT PLVInAppClient : public Object {
 public:
  /// `+sharedInstance`. The one client of the process.
  static std::shared_ptr<PLVInAppClient> sharedInstance() { return Host::ask(&Host::inAppClient); }

  /// `-registerWithAPIKey:`. Called once a kit instance, before any other operation.
  virtual void registerWithAPIKey(const NullableString& key) = 0;

  /// `-createUserToken:withPaymentInstrument:andUseCase:andCompletion:`. Creates a user token for
  /// an e-mail address and stores the instrument under it.
  virtual void createUserToken(const NullableString& email,
                               const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                               const NullableString& useCase,
                               PLVUserTokenCompletion completion) = 0;

  /// `-addPaymentInstrument:forUserToken:andUseCase:andCompletion:`. Stores the instrument under
  /// an existing token.
  virtual void addPaymentInstrument(
      const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
      const NullableString& userToken, const NullableString& useCase,
      PLVErrorCompletion completion) = 0;

  /// `-getPaymentInstrumentsList:andUseCase:andCompletion:`. Lists what is stored under a token for
  /// a use case.
  virtual void getPaymentInstrumentsList(const NullableString& userToken,
                                         const NullableString& useCase,
                                         PLVPaymentInstrumentsCompletion completion) = 0;

  /// `-removePaymentInstrument:fromUseCase:forUserToken:andCompletion:`. Removes a stored
  /// instrument.
  virtual void removePaymentInstrument(
      const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
      const NullableString& useCase, const NullableString& userToken,
      PLVErrorCompletion completion) = 0;
};

}  // namespace hlv
