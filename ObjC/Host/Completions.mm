#include "ObjC/Host/Completions.h"

#include "ObjC/Host/Pairs.h"
#include "ObjC/Host/Records.h"

namespace hlv::objc {
namespace {

/// The block that `completion` was made of, or `made`; nil for an empty completion.
template <class Block, class... Results>
CopiedBlock<Block> blockFor(const std::function<void(Results...)>& completion, Block made) {
  if (!completion) return CopiedBlock<Block>(nil);
  Block original = originalBlock<Block>(completion);
  return CopiedBlock<Block>(original ? original : made);
}

}  // namespace

CopiedBlock<GuestBlock> asBlock(HLVSDKGuestCompletion completion) {
  return blockFor<GuestBlock>(completion, ^(::HLVSDKGuest* guest, NSError* error) {
    @autoreleasepool {
      completion(adapted<Guest>(guest), fromNSError(error));
    }
  });
}

CopiedBlock<GuestCardBlock> asBlock(HLVSDKGuestCardCompletion completion) {
  return blockFor<GuestCardBlock>(
      completion, ^(::HLVSDKGuest* guest, ::HLVSDKCreditCard* card, NSError* error) {
        @autoreleasepool {
          completion(adapted<Guest>(guest), adapted<StoredCard>(card), fromNSError(error));
        }
      });
}

CopiedBlock<CardsBlock> asBlock(HLVSDKCreditCardsCompletion completion) {
  return blockFor<CardsBlock>(completion, ^(NSArray* cards, NSError* error) {
    @autoreleasepool {
      completion(adaptedList<StoredCard, HLVSDKCreditCard>(cards), fromNSError(error));
    }
  });
}

CopiedBlock<SuccessBlock> asBlock(HLVSDKSuccessCompletion completion) {
  return blockFor<SuccessBlock>(completion, ^(BOOL success, NSError* error) {
    @autoreleasepool {
      completion(success, fromNSError(error));
    }
  });
}

CopiedBlock<TokenBlock> asBlock(PLVUserTokenCompletion completion) {
  return blockFor<TokenBlock>(completion, ^(NSString* token, NSError* error) {
    @autoreleasepool {
      completion(fromNSString(token), fromNSError(error));
    }
  });
}

CopiedBlock<ErrorBlock> asBlock(PLVErrorCompletion completion) {
  return blockFor<ErrorBlock>(completion, ^(NSError* error) {
    @autoreleasepool {
      completion(fromNSError(error));
    }
  });
}

CopiedBlock<InstrumentsBlock> asBlock(PLVPaymentInstrumentsCompletion completion) {
  return blockFor<InstrumentsBlock>(completion, ^(NSArray* instruments, NSError* error) {
    @autoreleasepool {
      completion(adaptedList<Instrument, PLVCreditCardPaymentInstrument>(instruments),
                 fromNSError(error));
    }
  });
}

CopiedBlock<InstrumentBlock> asBlock(HLVSDKPaylevenInstrumentCompletion completion) {
  return blockFor<InstrumentBlock>(
      completion, ^(NSString* token, ::PLVCreditCardPaymentInstrument* instrument, NSError* error) {
        @autoreleasepool {
          completion(fromNSString(token), adapted<Instrument>(instrument), fromNSError(error));
        }
      });
}

CopiedBlock<PairsBlock> asBlock(HLVSDKPLVPaymentInstrumentsCompletion completion) {
  return blockFor<PairsBlock>(completion, ^(NSArray* pairs, NSError* error) {
    @autoreleasepool {
      completion(corePairs(pairs, error), fromNSError(error));
    }
  });
}

}  // namespace hlv::objc
