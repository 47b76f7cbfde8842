// Completions of the core as the blocks that an Objective-C object takes.
//
// Threading: a block may be called on any thread, and brings a pool with it.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/HLVSDKPLVPaymentInstrument.h>
#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

#include <functional>
#include <utility>

#include "ObjC/Binding/Blocks.h"
#include "ObjC/Host/Records.h"

namespace hlv::objc {

using GuestBlock = void (^)(::HLVSDKGuest*, NSError*);
using GuestCardBlock = void (^)(::HLVSDKGuest*, ::HLVSDKCreditCard*, NSError*);
using SuccessBlock = void (^)(BOOL, NSError*);
using InstrumentBlock = void (^)(NSString*, ::PLVCreditCardPaymentInstrument*, NSError*);
using PairsBlock = void (^)(NSArray<::HLVSDKPLVPaymentInstrument*>*, NSError*);

template <class Result>
using Crossed = decltype(crossing(std::declval<Result>()));

// Every source has blocks of its own; this is there once.
template <class... Results>
[[gnu::noinline]] void call(const std::function<void(Results...)>& completion,
                            Crossed<Results>... results) {
  @autoreleasepool {
    completion(asCore(results, As<Results>())...);
  }
}

/// An empty completion is nil, and one that was made of a block is that very block.
template <class... Results>
auto asBlock(std::function<void(Results...)> completion) {
  using Block = void (^)(Crossed<Results>...);
  if (!completion) return CopiedBlock<Block>(nil);
  if (Block original = originalBlock<Block>(completion)) return CopiedBlock<Block>(original);
  return CopiedBlock<Block>(^(Crossed<Results>... results) {
    call<Results...>(completion, results...);
  });
}

}  // namespace hlv::objc
