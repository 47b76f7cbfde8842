// A manager and a synchroniser that an app puts in the place of the kit's own, as the core calls
// them.
//
// Threading: as the objects.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrumentManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrumentsSynchronizer.h"
#include "ObjC/Binding/Held.h"

namespace hlv::objc {

class InstrumentManager final
    : public Adapter<HLVSDKPaymentInstrumentManager, id<HLVSDKPaymentInstrumentManager>> {
 public:
  using Adapter::Adapter;
  void addPaymentInstrument(const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
                            const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                            const std::shared_ptr<HLVSDKGuest>& guest,
                            HLVSDKGuestCardCompletion completion) override;
  void deletePaymentInstrumentWithID(const NullableString& ID, const NullableString& useCase,
                                     const std::shared_ptr<HLVSDKGuest>& guest,
                                     HLVSDKGuestCompletion completion) override;
  void updatePaymentInstrument(const NullableString& ID,
                               const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                               const std::shared_ptr<HLVSDKGuest>& guest,
                               HLVSDKGuestCardCompletion completion) override;
};

class InstrumentsSynchronizer final : public Adapter<HLVSDKPaymentInstrumentsSynchronizer,
                                                     id<HLVSDKPaymentInstrumentsSynchronizer>> {
 public:
  using Adapter::Adapter;
  void synchronizePaymentInstrumentsForGuest(const std::shared_ptr<HLVSDKGuest>& guest) override;
  void synchronizePaymentInstrumentsForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                                             HLVSDKSuccessCompletion completion) override;
};

}  // namespace hlv::objc
