#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h>

#include <objc/runtime.h>

#include <utility>

#include "ObjC/Binding/Director.h"
#include "ObjC/Foundation/Queues.h"
#include "ObjC/Host/Clients.h"
#include "ObjC/Host/Install.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"

using CoreSynchronizer = hlv::HLVSDKPaylevenPaymentInstrumentsSynchronizer;
using hlv::objc::adapted;
using hlv::objc::APIManager;
using hlv::objc::As;
using hlv::objc::asBlock;
using hlv::objc::asCore;
using hlv::objc::Guest;
using hlv::objc::InAppClient;
using hlv::objc::original;
using hlv::objc::PairsBlock;
using hlv::objc::SuccessBlock;

namespace {

// This class's own implementation, read before anybody can replace it.
IMP ownQuestion;

class SynchronizerDirector final
    : public hlv::objc::Director<CoreSynchronizer, HLVSDKPaylevenPaymentInstrumentsSynchronizer> {
 public:
  using Director::Director;

  bool isSynchronizing() const override { return [*object() isSynchronizing]; }

  void setSynchronizing(bool synchronizing) override { [*object() setSynchronizing:synchronizing]; }

  void synchronizePaymentInstrumentsForGuest(const std::shared_ptr<hlv::HLVSDKGuest>& guest,
                                             hlv::HLVSDKSuccessCompletion report) override {
    [*object() synchronizePaymentInstrumentsForGuest:original(guest)
                                          completion:asBlock(std::move(report)).block()];
  }

  bool isCreditCardExistsInArray(
      const hlv::NullableList<hlv::HLVSDKCreditCard>& cards,
      const std::shared_ptr<hlv::HLVSDKPLVPaymentInstrument>& pair) const override {
    const auto synchronizer = object();
    const SEL question = @selector(isCreditCardExistsInArray:relatedToPaymentInstrument:);
    // Asked for every instrument with all cards, which cross only for another implementation.
    if (!*synchronizer || [*synchronizer methodForSelector:question] == ownQuestion) {
      return CoreSynchronizer::isCreditCardExistsInArray(cards, pair);
    }
    return [*synchronizer isCreditCardExistsInArray:hlv::objc::crossing(cards)
                         relatedToPaymentInstrument:hlv::objc::crossing(pair)];
  }

  void fetchAllPaylevenPaymentInstrumentsForGuest(
      const std::shared_ptr<hlv::HLVSDKGuest>& guest,
      hlv::HLVSDKPLVPaymentInstrumentsCompletion report) override {
    [*object() fetchAllPaylevenPaymentInstrumentsForGuest:original(guest)
                                               completion:asBlock(std::move(report)).block()];
  }
};

}  // namespace

struct HLVSynchronizerCore {
  std::shared_ptr<SynchronizerDirector> kit;
};

@implementation HLVSDKPaylevenPaymentInstrumentsSynchronizer

static hlv::objc::CallOn<SynchronizerDirector, HLVSDKPaylevenPaymentInstrumentsSynchronizer> coreOf(
    HLVSDKPaylevenPaymentInstrumentsSynchronizer* object) {
  return {object, object->_core->kit.get()};
}

+ (void)load {
  ownQuestion = class_getMethodImplementation(self, @selector(isCreditCardExistsInArray:
                                                             relatedToPaymentInstrument:));
}

+ (void)initialize {
  hlv::objc::install();
}

- (instancetype)initWithAPIManager:(HLVSDKAPIManager*)apiManager
                    paylevenClient:(PLVInAppClient*)paylevenClient {
  if ((self = [super init])) {
    _core = new HLVSynchronizerCore{std::make_shared<SynchronizerDirector>(
        self, adapted<APIManager>(apiManager), adapted<InAppClient>(paylevenClient))};
  }
  return self;
}

- (instancetype)init {
  return [self initWithAPIManager:nil paylevenClient:nil];
}

- (void)dealloc {
  delete _core;
  [super dealloc];
}

#ifdef GNUSTEP
- (oneway void)release {
  auto* const reference = _core ? &_core->kit->reference() : nullptr;
  if (hlv::objc::WeakObject::wasLastRelease(self, reference)) [self dealloc];
}
#endif

- (HLVSDKAPIManager*)apiManager {
  return original(coreOf(self)->apiManager());
}

- (void)setApiManager:(HLVSDKAPIManager*)apiManager {
  coreOf(self)->setApiManager(adapted<APIManager>(apiManager));
}

- (PLVInAppClient*)paylevenClient {
  return original(coreOf(self)->paylevenClient());
}

- (void)setPaylevenClient:(PLVInAppClient*)paylevenClient {
  coreOf(self)->setPaylevenClient(adapted<InAppClient>(paylevenClient));
}

- (HLVSDKQueue)synchronizationQueue {
  return hlv::objc::toSystemQueue(coreOf(self)->synchronizationQueue());
}

- (void)setSynchronizationQueue:(HLVSDKQueue)queue {
  coreOf(self)->setSynchronizationQueue(hlv::objc::fromSystemQueue(queue));
}

- (BOOL)isSynchronizing {
  return coreOf(self)->CoreSynchronizer::isSynchronizing();
}

- (void)setSynchronizing:(BOOL)synchronizing {
  coreOf(self)->CoreSynchronizer::setSynchronizing(synchronizing);
}

- (void)synchronizePaymentInstrumentsForGuest:(HLVSDKGuest*)guest {
  coreOf(self)->CoreSynchronizer::synchronizePaymentInstrumentsForGuest(adapted<Guest>(guest));
}

- (void)synchronizePaymentInstrumentsForGuest:(HLVSDKGuest*)guest completion:(SuccessBlock)report {
  // A run keeps the object to its end, as it keeps its completion.
  const auto self_ = std::make_shared<hlv::objc::Held>(self);
  coreOf(self)->CoreSynchronizer::synchronizePaymentInstrumentsForGuest(
      adapted<Guest>(guest), [self_, report = hlv::objc::completion<hlv::HLVSDKSuccessCompletion>(
                                         report)](bool success, const hlv::ErrorPtr& error) {
        if (report) report(success, error);
      });
}

- (BOOL)isCreditCardExistsInArray:(NSArray*)creditCards
       relatedToPaymentInstrument:(HLVSDKPLVPaymentInstrument*)paymentInstrument {
  return coreOf(self)->CoreSynchronizer::isCreditCardExistsInArray(
      asCore(creditCards, As<hlv::NullableList<hlv::HLVSDKCreditCard>>()),
      asCore(paymentInstrument, As<std::shared_ptr<hlv::HLVSDKPLVPaymentInstrument>>()));
}

- (void)fetchAllPaylevenPaymentInstrumentsForGuest:(HLVSDKGuest*)guest
                                        completion:(PairsBlock)report {
  coreOf(self)->CoreSynchronizer::fetchAllPaylevenPaymentInstrumentsForGuest(
      adapted<Guest>(guest),
      hlv::objc::completion<hlv::HLVSDKPLVPaymentInstrumentsCompletion>(report));
}

@end
