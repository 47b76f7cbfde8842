#include "Public/Managers/ProviderInstrument.h"

#include "Platform/Send.h"

namespace hlv {

std::shared_ptr<PLVCreditCardPaymentInstrument> makeProviderInstrument(
    const std::shared_ptr<HLVSDKPaymentInstrument>& card) {
  using Card = HLVSDKPaymentInstrument;
  return PLVPaymentInstrument::createCreditCardPaymentInstrumentWithPan(
      send(card, &Card::pan), send(card, &Card::expiryMonth), send(card, &Card::expiryYear),
      send(card, &Card::cvv), send(card, &Card::cardHolder));
}

}  // namespace hlv
