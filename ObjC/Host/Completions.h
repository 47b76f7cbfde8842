// Completions of the core as the blocks that an Objective-C object takes.
//
// Threading: a block may be called on any thread, and brings a pool with it.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/HLVSDKPLVPaymentInstrument.h>
#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

#include "Host/HLVSDKCoreKit/HLVSDKCompletions.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "ObjC/Binding/Blocks.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"

namespace hlv::objc {

using GuestBlock = void (^)(::HLVSDKGuest*, NSError*);
using GuestCardBlock = void (^)(::HLVSDKGuest*, ::HLVSDKCreditCard*, NSError*);
using CardsBlock = void (^)(NSArray*, NSError*);
using SuccessBlock = void (^)(BOOL, NSError*);
using TokenBlock = void (^)(NSString*, NSError*);
using ErrorBlock = void (^)(NSError*);
using InstrumentsBlock = void (^)(NSArray*, NSError*);
using InstrumentBlock = void (^)(NSString*, ::PLVCreditCardPaymentInstrument*, NSError*);
using PairsBlock = void (^)(NSArray<::HLVSDKPLVPaymentInstrument*>*, NSError*);

/// An empty completion is nil, and one that was made of a block is that very block.
CopiedBlock<GuestBlock> asBlock(HLVSDKGuestCompletion completion);
CopiedBlock<GuestCardBlock> asBlock(HLVSDKGuestCardCompletion completion);
CopiedBlock<CardsBlock> asBlock(HLVSDKCreditCardsCompletion completion);
CopiedBlock<SuccessBlock> asBlock(HLVSDKSuccessCompletion completion);
CopiedBlock<TokenBlock> asBlock(PLVUserTokenCompletion completion);
CopiedBlock<ErrorBlock> asBlock(PLVErrorCompletion completion);
CopiedBlock<InstrumentsBlock> asBlock(PLVPaymentInstrumentsCompletion completion);
CopiedBlock<InstrumentBlock> asBlock(HLVSDKPaylevenInstrumentCompletion completion);
CopiedBlock<PairsBlock> asBlock(HLVSDKPLVPaymentInstrumentsCompletion completion);

}  // namespace hlv::objc
