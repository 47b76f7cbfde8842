#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h>

#include <utility>

#include "ObjC/Binding/Blocks.h"
#include "ObjC/Binding/Install.h"
#include "ObjC/Classes/Cores.h"
#include "ObjC/Foundation/Queues.h"
#include "ObjC/Host/APIManager.h"
#include "ObjC/Host/InAppClient.h"
#include "ObjC/Host/Records.h"

using hlv::objc::adapted;
using hlv::objc::adaptedList;
using hlv::objc::APIManager;
using hlv::objc::Guest;
using hlv::objc::InAppClient;
using hlv::objc::original;
using hlv::objc::StoredCard;

struct HLVSynchronizerCore {
  std::shared_ptr<hlv::HLVSDKPaylevenPaymentInstrumentsSynchronizer> kit;
};

@implementation HLVSDKPaylevenPaymentInstrumentsSynchronizer

+ (void)initialize {
  hlv::objc::install();
}

- (instancetype)initWithCore:
    (std::shared_ptr<hlv::HLVSDKPaylevenPaymentInstrumentsSynchronizer>)synchronizer {
  if ((self = [super init])) _core = new HLVSynchronizerCore{std::move(synchronizer)};
  return self;
}

- (instancetype)initWithAPIManager:(HLVSDKAPIManager*)apiManager
                    paylevenClient:(PLVInAppClient*)paylevenClient {
  return [self
      initWithCore:hlv::HLVSDKPaylevenPaymentInstrumentsSynchronizer::initWithAPIManager(
                       adapted<APIManager>(apiManager), adapted<InAppClient>(paylevenClient))];
}

- (instancetype)init {
  return [self initWithAPIManager:nil paylevenClient:nil];
}

- (void)dealloc {
  delete _core;
  [super dealloc];
}

- (HLVSDKAPIManager*)apiManager {
  return original(_core->kit->apiManager());
}

- (void)setApiManager:(HLVSDKAPIManager*)apiManager {
  _core->kit->setApiManager(adapted<APIManager>(apiManager));
}

- (PLVInAppClient*)paylevenClient {
  return original(_core->kit->paylevenClient());
}

- (void)setPaylevenClient:(PLVInAppClient*)paylevenClient {
  _core->kit->setPaylevenClient(adapted<InAppClient>(paylevenClient));
}

- (HLVSDKQueue)synchronizationQueue {
  return hlv::objc::toSystemQueue(_core->kit->synchronizationQueue());
}

- (void)setSynchronizationQueue:(HLVSDKQueue)queue {
  _core->kit->setSynchronizationQueue(hlv::objc::fromSystemQueue(queue));
}

- (BOOL)isSynchronizing {
  return _core->kit->isSynchronizing();
}

- (void)setSynchronizing:(BOOL)synchronizing {
  _core->kit->setSynchronizing(synchronizing);
}

- (void)synchronizePaymentInstrumentsForGuest:(HLVSDKGuest*)guest {
  _core->kit->synchronizePaymentInstrumentsForGuest(adapted<Guest>(guest));
}

- (void)synchronizePaymentInstrumentsForGuest:(HLVSDKGuest*)guest
                                   completion:(void (^)(BOOL, NSError*))completion {
  _core->kit->synchronizePaymentInstrumentsForGuest(
      adapted<Guest>(guest), hlv::objc::completion<hlv::HLVSDKSuccessCompletion>(completion));
}

- (BOOL)isCreditCardExistsInArray:(NSArray*)creditCards
       relatedToPaymentInstrument:(HLVSDKPLVPaymentInstrument*)paymentInstrument {
  return _core->kit->isCreditCardExistsInArray(
      adaptedList<StoredCard, hlv::HLVSDKCreditCard>(creditCards), HLVCoreOf(paymentInstrument));
}

- (void)fetchAllPaylevenPaymentInstrumentsForGuest:(HLVSDKGuest*)guest
                                        completion:(void (^)(NSArray<HLVSDKPLVPaymentInstrument*>*,
                                                             NSError*))completion {
  _core->kit->fetchAllPaylevenPaymentInstrumentsForGuest(
      adapted<Guest>(guest),
      hlv::objc::completion<hlv::HLVSDKPLVPaymentInstrumentsCompletion>(completion));
}

@end
