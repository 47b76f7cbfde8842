// A provider instrument with the use case under which the provider listed it.
//
// Threading: one thread at a time.
#pragma once

#include <memory>

#include "Host/PaylevenFramework/PLVPaymentInstrument.h"
#include "Platform/Export.h"
#include "Platform/NullableString.h"
#include "Platform/Object.h"

namespace hlv {

class HLV_EXPORT HLVSDKPLVPaymentInstrument : public Object {
 public:
  /// `-initWithPaymentInstrument:useCase:`. Checks nothing; either argument may be missing.
  [[nodiscard]] static std::shared_ptr<HLVSDKPLVPaymentInstrument> initWithPaymentInstrument(
      std::shared_ptr<PLVCreditCardPaymentInstrument> instrument, NullableString useCase);

  /// `-paymentInstrument`, `-setPaymentInstrument:`
  std::shared_ptr<PLVCreditCardPaymentInstrument> paymentInstrument() const;
  void setPaymentInstrument(std::shared_ptr<PLVCreditCardPaymentInstrument> instrument);
  /// `-useCase`, `-setUseCase:`
  NullableString useCase() const;
  void setUseCase(NullableString useCase);

 private:
  HLVSDKPLVPaymentInstrument() = default;

  std::shared_ptr<PLVCreditCardPaymentInstrument> paymentInstrument_;
  NullableString useCase_;
};

}  // namespace hlv
