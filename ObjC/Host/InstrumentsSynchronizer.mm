#include "ObjC/Host/InstrumentsSynchronizer.h"

#include <utility>

#include "ObjC/Host/Completions.h"
#include "ObjC/Host/Records.h"

namespace hlv::objc {

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
