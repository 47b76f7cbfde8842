#include "ObjC/Host/KitProtocols.h"

#include <utility>

#include "ObjC/Host/Completions.h"
#include "ObjC/Host/Records.h"

namespace hlv::objc {

void InstrumentManager::addPaymentInstrument(
    const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
    const std::shared_ptr<HLVSDKGuest>& guest, HLVSDKGuestCardCompletion completion) {
  [object() addPaymentInstrument:original(instrument)
                  billingAddress:original(address)
                        forGuest:original(guest)
                      completion:asBlock(std::move(completion)).block()];
}

void InstrumentManager::deletePaymentInstrumentWithID(const NullableString& ID,
                                                      const NullableString& useCase,
                                                      const std::shared_ptr<HLVSDKGuest>& guest,
                                                      HLVSDKGuestCompletion completion) {
  [object() deletePaymentInstrumentWithID:toNSString(ID)
                                  useCase:toNSString(useCase)
                                fromGuest:original(guest)
                               completion:asBlock(std::move(completion)).block()];
}

void InstrumentManager::updatePaymentInstrument(
    const NullableString& ID, const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
    const std::shared_ptr<HLVSDKGuest>& guest, HLVSDKGuestCardCompletion completion) {
  [object() updatePaymentInstrument:toNSString(ID)
                     billingAddress:original(address)
                           forGuest:original(guest)
                         completion:asBlock(std::move(completion)).block()];
}

void InstrumentsSynchronizer::synchronizePaymentInstrumentsForGuest(
    const std::shared_ptr<HLVSDKGuest>& guest) {
  [object() synchronizePaymentInstrumentsForGuest:original(guest)];
}

void InstrumentsSynchronizer::synchronizePaymentInstrumentsForGuest(
    const std::shared_ptr<HLVSDKGuest>& guest, HLVSDKSuccessCompletion completion) {
  [object() synchronizePaymentInstrumentsForGuest:original(guest)
                                       completion:asBlock(std::move(completion)).block()];
}

}  // namespace hlv::objc
