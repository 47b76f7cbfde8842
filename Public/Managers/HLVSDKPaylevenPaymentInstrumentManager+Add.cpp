// Adding a card: which way it goes.
#include <utility>

#include "Async/Deliver.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Public/Managers/KitErrors.h"
#include "Values/Send.h"

namespace hlv {

void HLVSDKPaylevenPaymentInstrumentManager::addPaymentInstrument(
    const std::shared_ptr<HLVSDKPaymentInstrument>& card,
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
    const std::shared_ptr<HLVSDKGuest>& guest, HLVSDKGuestCardCompletion completion) {
  refreshConnection();

  ErrorPtr cardError;
  if (!send(card, &HLVSDKPaymentInstrument::isValid, &cardError)) {
    deliver(std::move(completion), nullptr, nullptr, cardError);
    return;
  }
  if (!isConnectionAvailable()) {
    deliverBuilt(std::move(completion),
                 [](Delivery) { return std::tuple(nullptr, nullptr, noConnectionError()); });
    return;
  }

  const bool guestHasToken = length(send(guest, &HLVSDKGuest::paylevenToken)) > 0;
  if (guestHasToken) {
    addNewPaymentInstrument(card, address, guest, std::move(completion));
  } else {
    addFirstPaymentInstrument(card, address, guest, std::move(completion));
  }
}

}  // namespace hlv
