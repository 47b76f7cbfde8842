#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentManager.h>

#include <utility>

#include "ObjC/Binding/Blocks.h"
#include "ObjC/Binding/Install.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Classes/Cores.h"
#include "ObjC/Host/APIManager.h"
#include "ObjC/Host/InAppClient.h"
#include "ObjC/Host/Records.h"
#include "ObjC/Host/Services.h"

using hlv::HLVSDKGuestCardCompletion;
using hlv::HLVSDKGuestCompletion;
using hlv::HLVSDKPaylevenInstrumentCompletion;
using hlv::objc::adapted;
using hlv::objc::APIManager;
using hlv::objc::BillingAddress;
using hlv::objc::EnteredCard;
using hlv::objc::fromNSString;
using hlv::objc::Guest;
using hlv::objc::InAppClient;
using hlv::objc::original;
using hlv::objc::Reachability;

using GuestBlock = void (^)(HLVSDKGuest*, NSError*);
using GuestCardBlock = void (^)(HLVSDKGuest*, HLVSDKCreditCard*, NSError*);
using InstrumentBlock = void (^)(NSString*, PLVCreditCardPaymentInstrument*, NSError*);

struct HLVManagerCore {
  std::shared_ptr<hlv::HLVSDKPaylevenPaymentInstrumentManager> kit;
};

@implementation HLVSDKPaylevenPaymentInstrumentManager

+ (void)initialize {
  hlv::objc::install();
}

- (instancetype)initWithCore:(std::shared_ptr<hlv::HLVSDKPaylevenPaymentInstrumentManager>)manager {
  if ((self = [super init])) _core = new HLVManagerCore{std::move(manager)};
  return self;
}

- (instancetype)initWithAPIManager:(HLVSDKAPIManager*)apiManager
                    paylevenClient:(PLVInAppClient*)paylevenClient
                      reachability:(HLVSDKReachability*)reachability {
  return
      [self initWithCore:hlv::HLVSDKPaylevenPaymentInstrumentManager::initWithAPIManager(
                             adapted<APIManager>(apiManager), adapted<InAppClient>(paylevenClient),
                             adapted<Reachability>(reachability))];
}

- (instancetype)init {
  return [self initWithAPIManager:nil paylevenClient:nil reachability:nil];
}

- (void)dealloc {
  delete _core;
  [super dealloc];
}

- (BOOL)isConnectionAvailable {
  return _core->kit->isConnectionAvailable();
}

- (void)setConnectionAvaiable:(BOOL)available {
  _core->kit->setConnectionAvaiable(available);
}

- (PLVInAppClient*)paymentClient {
  return original(_core->kit->paymentClient());
}

- (void)setPaymentClient:(PLVInAppClient*)paymentClient {
  _core->kit->setPaymentClient(adapted<InAppClient>(paymentClient));
}

- (HLVSDKAPIManager*)apiManager {
  return original(_core->kit->apiManager());
}

- (void)setApiManager:(HLVSDKAPIManager*)apiManager {
  _core->kit->setApiManager(adapted<APIManager>(apiManager));
}

- (HLVSDKReachability*)reachability {
  return original(_core->kit->reachability());
}

- (void)setReachability:(HLVSDKReachability*)reachability {
  _core->kit->setReachability(adapted<Reachability>(reachability));
}

- (void)handleReachabilityChangedNotification:(NSNotification*)notification {
  _core->kit->handleReachabilityChangedNotification(hlv::objc::fromNSNotification(notification));
}

- (BOOL)validateBillingAddress:(HLVSDKPaymentBillingAddress*)billingAddress error:(NSError**)error {
  if (!error) {
    return _core->kit->validateBillingAddress(adapted<BillingAddress>(billingAddress), nullptr);
  }
  hlv::ErrorPtr reason = hlv::objc::fromNSError(*error);
  const bool valid =
      _core->kit->validateBillingAddress(adapted<BillingAddress>(billingAddress), &reason);
  *error = hlv::objc::toNSError(reason);
  return valid;
}

- (void)addPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
              billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress
                    forGuest:(HLVSDKGuest*)guest
                  completion:(GuestCardBlock)completion {
  _core->kit->addPaymentInstrument(adapted<EnteredCard>(paymentInstrument),
                                   adapted<BillingAddress>(billingAddress), adapted<Guest>(guest),
                                   hlv::objc::completion<HLVSDKGuestCardCompletion>(completion));
}

- (void)addFirstPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
                   billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress
                         forGuest:(HLVSDKGuest*)guest
                       completion:(GuestCardBlock)completion {
  _core->kit->addFirstPaymentInstrument(
      adapted<EnteredCard>(paymentInstrument), adapted<BillingAddress>(billingAddress),
      adapted<Guest>(guest), hlv::objc::completion<HLVSDKGuestCardCompletion>(completion));
}

- (void)addFirstPaymentInstrumentToPayleven:(HLVSDKPaymentInstrument*)paymentInstrument
                              forGuestEmail:(NSString*)email
                                 completion:(InstrumentBlock)completion {
  _core->kit->addFirstPaymentInstrumentToPayleven(
      adapted<EnteredCard>(paymentInstrument), fromNSString(email),
      hlv::objc::completion<HLVSDKPaylevenInstrumentCompletion>(completion));
}

- (void)addNewPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
                 billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress
                       forGuest:(HLVSDKGuest*)guest
                     completion:(GuestCardBlock)completion {
  _core->kit->addNewPaymentInstrument(
      adapted<EnteredCard>(paymentInstrument), adapted<BillingAddress>(billingAddress),
      adapted<Guest>(guest), hlv::objc::completion<HLVSDKGuestCardCompletion>(completion));
}

- (void)addNewPaymentInstrumentToPayleven:(HLVSDKPaymentInstrument*)paymentInstrument
                        withPaylevenToken:(NSString*)paylevenToken
                               completion:(InstrumentBlock)completion {
  _core->kit->addNewPaymentInstrumentToPayleven(
      adapted<EnteredCard>(paymentInstrument), fromNSString(paylevenToken),
      hlv::objc::completion<HLVSDKPaylevenInstrumentCompletion>(completion));
}

- (void)processAddedPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
                        paylevenToken:(NSString*)paylevenToken
                           completion:(InstrumentBlock)completion {
  _core->kit->processAddedPaymentInstrument(
      adapted<EnteredCard>(paymentInstrument), fromNSString(paylevenToken),
      hlv::objc::completion<HLVSDKPaylevenInstrumentCompletion>(completion));
}

- (void)deletePaymentInstrumentWithID:(NSString*)ID
                              useCase:(NSString*)useCase
                            fromGuest:(HLVSDKGuest*)guest
                           completion:(GuestBlock)completion {
  _core->kit->deletePaymentInstrumentWithID(
      fromNSString(ID), fromNSString(useCase), adapted<Guest>(guest),
      hlv::objc::completion<HLVSDKGuestCompletion>(completion));
}

- (void)updatePaymentInstrument:(NSString*)ID
                 billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress
                       forGuest:(HLVSDKGuest*)guest
                     completion:(GuestCardBlock)completion {
  _core->kit->updatePaymentInstrument(fromNSString(ID), adapted<BillingAddress>(billingAddress),
                                      adapted<Guest>(guest),
                                      hlv::objc::completion<HLVSDKGuestCardCompletion>(completion));
}

@end
