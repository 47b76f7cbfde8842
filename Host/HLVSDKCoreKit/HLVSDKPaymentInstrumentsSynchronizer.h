// The protocol of what keeps a provider's instruments in step with a guest's cards.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKCompletions.h"
#include "Values/Export.h"
#include "Values/Object.h"

namespace hlv {

class HLV_EXPORT HLVSDKPaymentInstrumentsSynchronizer : public Object {
 public:
  /// `-synchronizePaymentInstrumentsForGuest:`
  virtual void synchronizePaymentInstrumentsForGuest(const std::shared_ptr<HLVSDKGuest>& guest) = 0;

  /// `-synchronizePaymentInstrumentsForGuest:completion:`
  virtual void synchronizePaymentInstrumentsForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                                                     HLVSDKSuccessCompletion completion) = 0;
};

}  // namespace hlv
