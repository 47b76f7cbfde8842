// What the classes of this folder know of each other: the core's object behind each. Private to it.
//
// Threading: as the objects.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKPLVPaymentInstrument.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentManager.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h>

#include <memory>

#include "Models/HLVSDKPLVPaymentInstrument.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"

@interface HLVSDKPLVPaymentInstrument (Core)
- (instancetype)initWithCore:(std::shared_ptr<hlv::HLVSDKPLVPaymentInstrument>)pair;
/// Null for nil.
std::shared_ptr<hlv::HLVSDKPLVPaymentInstrument> HLVCoreOf(HLVSDKPLVPaymentInstrument* object);
@end

@interface HLVSDKPaylevenPaymentInstrumentManager (Core)
- (instancetype)initWithCore:(std::shared_ptr<hlv::HLVSDKPaylevenPaymentInstrumentManager>)manager;
@end

@interface HLVSDKPaylevenPaymentInstrumentsSynchronizer (Core)
- (instancetype)initWithCore:
    (std::shared_ptr<hlv::HLVSDKPaylevenPaymentInstrumentsSynchronizer>)synchronizer;
@end
