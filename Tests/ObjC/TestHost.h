// A host SDK and a provider as Objective-C classes that do nothing until the test answers, and
// record what they get.
//
// Threading: calls and answers one at a time; the answers may come from any thread.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKPaylevenKit.h>
#import <HLVSDKPaylevenKit/HalvoAuthenticationDeclarations.h>
#import <HLVSDKPaylevenKit/HalvoErrorsDeclarations.h>

#include <Block.h>

#include <deque>
#include <string>
#include <vector>

namespace hlv::testing {

using GuestBlock = void (^)(HLVSDKGuest*, NSError*);
using GuestCardBlock = void (^)(HLVSDKGuest*, HLVSDKCreditCard*, NSError*);
using CardsBlock = void (^)(NSArray<HLVSDKCreditCard*>*, NSError*);
using InstrumentsBlock = void (^)(NSArray<PLVCreditCardPaymentInstrument*>*, NSError*);
using TokenBlock = void (^)(NSString*, NSError*);
using ErrorBlock = void (^)(NSError*);
using InstrumentBlock = void (^)(NSString*, PLVCreditCardPaymentInstrument*, NSError*);

/// Callbacks that wait, oldest first.
template <class Block>
class HeldBlocks {
 public:
  HeldBlocks() = default;
  HeldBlocks(const HeldBlocks&) = delete;
  HeldBlocks& operator=(const HeldBlocks&) = delete;
  ~HeldBlocks() { drop(); }
  /// Keeps `block` as a host does.
  void hold(Block block) {
    if (block) block = Block_copy(block);
    blocks_.push_back(block);
  }
  template <class... Results>
  void answer(Results... results) {
    Block block = blocks_.at(0);
    blocks_.pop_front();
    block(results...);
    Block_release(block);
  }
  void drop() {
    for (Block block : blocks_) {
      if (block) Block_release(block);
    }
    blocks_.clear();
  }
  Block oldest() const { return blocks_.at(0); }
  std::size_t size() const { return blocks_.size(); }

 private:
  std::deque<Block> blocks_;
};

/// What the classes of the host and the provider return, receive and hold.
struct TestHost {
  static TestHost& shared();

  HLVSDKGuest* currentGuest = nil;
  NSInteger network = 1;
  BOOL authorized = YES;
  std::vector<std::string> trace;
  /// The last add-card request.
  HLVSDKAddCreditCardRequestInfo* request = nil;
  NSDictionary* address = nil;
  /// The token of the last further card.
  NSString* lastToken = nil;
  /// What the host's own add-card request writes and finds wrong.
  NSDictionary* requestBody = nil;
  NSError* requestError = nil;

  HeldBlocks<GuestBlock> guestUpdates, deletions;
  HeldBlocks<GuestCardBlock> cardAdds, cardUpdates;
  HeldBlocks<CardsBlock> cardFetches;
  HeldBlocks<InstrumentsBlock> lists;
  HeldBlocks<TokenBlock> tokens;
  HeldBlocks<ErrorBlock> adds, removals;

  /// The lines since the last call, joined.
  std::string takeTrace();
  /// Lets go of everything.
  void reset();
};

/// A record of the host with these fields; released with the pool.
template <class Record>
Record* make(NSDictionary* fields);

/// How many records live.
std::size_t liveRecords();

/// The fields of a record.
NSMutableDictionary* fieldsOf(id record);

template <class Record>
Record* make(NSDictionary* fields) {
  Record* record = [[Record new] autorelease];
  [fieldsOf(record) addEntriesFromDictionary:fields];
  return record;
}

/// An error of the host's backend or the provider.
NSError* makeError(NSString* description);

}  // namespace hlv::testing

/// A kit entry of the host configuration.
@interface TestKitEntry : NSObject {
 @private
  Class _kit;
  id _configuration;
}
+ (instancetype)entryWithKit:(Class)kit configuration:(id)configuration;
- (Class)kit;
- (id)configuration;
@end
