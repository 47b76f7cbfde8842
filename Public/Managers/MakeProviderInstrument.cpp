#include "Public/Managers/MakeProviderInstrument.h"

#include "Values/Secret.h"
#include "Values/Send.h"

namespace hlv {

std::shared_ptr<PLVCreditCardPaymentInstrument> makeProviderInstrument(
    const std::shared_ptr<HLVSDKPaymentInstrument>& card) {
  const Secret pan(card, &HLVSDKPaymentInstrument::pan);
  const Secret cvv(card, &HLVSDKPaymentInstrument::cvv);
  return PLVPaymentInstrument::createCreditCardPaymentInstrumentWithPan(
      pan.text(), send(card, &HLVSDKPaymentInstrument::expiryMonth),
      send(card, &HLVSDKPaymentInstrument::expiryYear), cvv.text(),
      send(card, &HLVSDKPaymentInstrument::cardHolder));
}

}  // namespace hlv
