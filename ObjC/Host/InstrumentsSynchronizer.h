// The synchroniser, the kit's or one that an app puts in its place, as the core calls it.
//
// Threading: as the object.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include <memory>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrumentsSynchronizer.h"
#include "ObjC/Host/Completions.h"

namespace hlv::objc {

class InstrumentsSynchronizer final : public Adapter<HLVSDKPaymentInstrumentsSynchronizer,
                                                     id<HLVSDKPaymentInstrumentsSynchronizer>> {
 public:
  using Adapter::Adapter;
  void synchronizePaymentInstrumentsForGuest(const std::shared_ptr<HLVSDKGuest>& guest) override {
    [object() synchronizePaymentInstrumentsForGuest:original(guest)];
  }
  void synchronizePaymentInstrumentsForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                                             HLVSDKSuccessCompletion completion) override {
    [object() synchronizePaymentInstrumentsForGuest:original(guest)
                                         completion:asBlock(std::move(completion)).block()];
  }
};

}  // namespace hlv::objc
