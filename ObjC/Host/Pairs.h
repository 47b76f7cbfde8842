// Pairs of an instrument and its use case, as the core keeps them.
//
// Threading: one thread at a time.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKPLVPaymentInstrument.h>

#include <memory>

#include "Models/HLVSDKPLVPaymentInstrument.h"
#include "ObjC/Binding/Crossing.h"

namespace hlv::objc {

/// What the pair holds now; nil is null.
std::shared_ptr<HLVSDKPLVPaymentInstrument> corePair(::HLVSDKPLVPaymentInstrument* pair);

/// Without an error there is always a list.
NullableList<HLVSDKPLVPaymentInstrument> corePairs(NSArray* pairs, NSError* error);

}  // namespace hlv::objc
