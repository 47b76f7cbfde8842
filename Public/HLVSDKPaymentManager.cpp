#include "Public/HLVSDKPaymentManager.h"

#include <utility>

#include "Public/HLVSDKPayleven.h"
#include "Values/Send.h"

namespace hlv {

std::shared_ptr<HLVSDKPaymentManager> HLVSDKPaymentManager::make() {
  return std::shared_ptr<HLVSDKPaymentManager>(new HLVSDKPaymentManager);
}

std::shared_ptr<HLVSDKPaymentInstrumentManager> HLVSDKPaymentManager::sharedManager() {
  return send(HLVSDKPayleven::sharedInstance(), &HLVSDKPayleven::paymentInstrumentManager);
}

void HLVSDKPaymentManager::addPaymentInstrument(
    const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
    const std::shared_ptr<HLVSDKGuest>& guest, HLVSDKGuestCardCompletion completion) const {
  send(sharedManager(), &HLVSDKPaymentInstrumentManager::addPaymentInstrument, instrument, address,
       guest, std::move(completion));
}

void HLVSDKPaymentManager::deletePaymentInstrumentWithID(const NullableString& ID,
                                                         const NullableString& useCase,
                                                         const std::shared_ptr<HLVSDKGuest>& guest,
                                                         HLVSDKGuestCompletion completion) const {
  send(sharedManager(), &HLVSDKPaymentInstrumentManager::deletePaymentInstrumentWithID, ID, useCase,
       guest, std::move(completion));
}

void HLVSDKPaymentManager::updatePaymentInstrument(
    const NullableString& ID, const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
    const std::shared_ptr<HLVSDKGuest>& guest, HLVSDKGuestCardCompletion completion) const {
  send(sharedManager(), &HLVSDKPaymentInstrumentManager::updatePaymentInstrument, ID, address,
       guest, std::move(completion));
}

}  // namespace hlv
