#include "Public/Managers/ProviderInstrument.h"

#include "Platform/Secret.h"
#include "Platform/Send.h"

namespace hlv {

std::shared_ptr<PLVCreditCardPaymentInstrument> makeProviderInstrument(
    const std::shared_ptr<HLVSDKPaymentInstrument>& card) {
  using Card = HLVSDKPaymentInstrument;
  const Secret pan(card, &Card::pan);
  const Secret cvv(card, &Card::cvv);
  return PLVPaymentInstrument::createCreditCardPaymentInstrumentWithPan(
      pan.text(), send(card, &Card::expiryMonth), send(card, &Card::expiryYear), cvv.text(),
      send(card, &Card::cardHolder));
}

}  // namespace hlv
