#include "Models/HLVSDKPLVPaymentInstrument.h"

#include <utility>

namespace hlv {

std::shared_ptr<HLVSDKPLVPaymentInstrument> HLVSDKPLVPaymentInstrument::initWithPaymentInstrument(
    std::shared_ptr<PLVCreditCardPaymentInstrument> instrument, NullableString useCase) {
  // The constructor is private; what is made here takes one allocation all the same.
  struct Made final : HLVSDKPLVPaymentInstrument {};
  auto pair = std::make_shared<Made>();
  pair->setPaymentInstrument(std::move(instrument));
  pair->setUseCase(std::move(useCase));
  return pair;
}

std::shared_ptr<PLVCreditCardPaymentInstrument> HLVSDKPLVPaymentInstrument::paymentInstrument()
    const {
  return paymentInstrument_;
}

void HLVSDKPLVPaymentInstrument::setPaymentInstrument(
    std::shared_ptr<PLVCreditCardPaymentInstrument> instrument) {
  paymentInstrument_ = std::move(instrument);
}

NullableString HLVSDKPLVPaymentInstrument::useCase() const { return useCase_; }

void HLVSDKPLVPaymentInstrument::setUseCase(NullableString useCase) {
  useCase_ = std::move(useCase);
}

}  // namespace hlv
