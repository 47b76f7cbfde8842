#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentManager.h>

#include <utility>

#include "ObjC/Binding/Director.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Foundation/FoundationPlatform.h"
#include "ObjC/Host/Clients.h"
#include "ObjC/Host/Install.h"
#include "ObjC/Host/Records.h"
#include "ObjC/Host/Services.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"

using CoreManager = hlv::HLVSDKPaylevenPaymentInstrumentManager;
using hlv::HLVSDKGuestCardCompletion;
using hlv::HLVSDKGuestCompletion;
using hlv::HLVSDKPaylevenInstrumentCompletion;
using hlv::objc::adapted;
using hlv::objc::APIManager;
using hlv::objc::asBlock;
using hlv::objc::BillingAddress;
using hlv::objc::completion;
using hlv::objc::EnteredCard;
using hlv::objc::fromNSString;
using hlv::objc::Guest;
using hlv::objc::GuestBlock;
using hlv::objc::GuestCardBlock;
using hlv::objc::InAppClient;
using hlv::objc::InstrumentBlock;
using hlv::objc::original;
using hlv::objc::Reachability;
using hlv::objc::toNSString;

namespace {

class ManagerDirector final
    : public hlv::objc::Director<CoreManager, HLVSDKPaylevenPaymentInstrumentManager> {
 public:
  using Director::Director;

  bool isConnectionAvailable() const override { return [*object() isConnectionAvailable]; }

  void setConnectionAvaiable(bool available) override {
    [*object() setConnectionAvaiable:available];
  }

  void addFirstPaymentInstrument(const std::shared_ptr<hlv::HLVSDKPaymentInstrument>& card,
                                 const std::shared_ptr<hlv::HLVSDKPaymentBillingAddress>& address,
                                 const std::shared_ptr<hlv::HLVSDKGuest>& guest,
                                 HLVSDKGuestCardCompletion report) override {
    [*object() addFirstPaymentInstrument:original(card)
                          billingAddress:original(address)
                                forGuest:original(guest)
                              completion:asBlock(std::move(report)).block()];
  }

  void addFirstPaymentInstrumentToPayleven(
      const std::shared_ptr<hlv::HLVSDKPaymentInstrument>& card, const hlv::NullableString& email,
      HLVSDKPaylevenInstrumentCompletion report) override {
    [*object() addFirstPaymentInstrumentToPayleven:original(card)
                                     forGuestEmail:toNSString(email)
                                        completion:asBlock(std::move(report)).block()];
  }

  void addNewPaymentInstrument(const std::shared_ptr<hlv::HLVSDKPaymentInstrument>& card,
                               const std::shared_ptr<hlv::HLVSDKPaymentBillingAddress>& address,
                               const std::shared_ptr<hlv::HLVSDKGuest>& guest,
                               HLVSDKGuestCardCompletion report) override {
    [*object() addNewPaymentInstrument:original(card)
                        billingAddress:original(address)
                              forGuest:original(guest)
                            completion:asBlock(std::move(report)).block()];
  }

  void addNewPaymentInstrumentToPayleven(const std::shared_ptr<hlv::HLVSDKPaymentInstrument>& card,
                                         const hlv::NullableString& token,
                                         HLVSDKPaylevenInstrumentCompletion report) override {
    [*object() addNewPaymentInstrumentToPayleven:original(card)
                               withPaylevenToken:toNSString(token)
                                      completion:asBlock(std::move(report)).block()];
  }

  void processAddedPaymentInstrument(const std::shared_ptr<hlv::HLVSDKPaymentInstrument>& card,
                                     const hlv::NullableString& token,
                                     HLVSDKPaylevenInstrumentCompletion report) override {
    [*object() processAddedPaymentInstrument:original(card)
                               paylevenToken:toNSString(token)
                                  completion:asBlock(std::move(report)).block()];
  }
};

}  // namespace

struct HLVManagerCore {
  std::shared_ptr<ManagerDirector> kit;
};

@implementation HLVSDKPaylevenPaymentInstrumentManager

static hlv::objc::CallOn<ManagerDirector, HLVSDKPaylevenPaymentInstrumentManager> coreOf(
    HLVSDKPaylevenPaymentInstrumentManager* object) {
  return {object, object->_core->kit.get()};
}

+ (void)initialize {
  hlv::objc::install();
}

- (instancetype)initWithAPIManager:(HLVSDKAPIManager*)apiManager
                    paylevenClient:(PLVInAppClient*)paylevenClient
                      reachability:(HLVSDKReachability*)reachability {
  if ((self = [super init])) {
    _core = new HLVManagerCore{std::make_shared<ManagerDirector>(self)};
    [self setReachability:reachability];
    [self setApiManager:apiManager];
    [self setPaymentClient:paylevenClient];
    hlv::objc::observe(self, @selector(handleReachabilityChangedNotification:),
                       HLVSDKReachabilityDidChangeReachabilityStateNotification);
  }
  return self;
}

- (instancetype)init {
  return [self initWithAPIManager:nil paylevenClient:nil reachability:nil];
}

- (void)dealloc {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  delete _core;
  [super dealloc];
}

#ifdef GNUSTEP
- (oneway void)release {
  auto* const reference = _core ? &_core->kit->reference() : nullptr;
  if (hlv::objc::WeakObject::wasLastRelease(self, reference)) [self dealloc];
}
#endif

- (BOOL)isConnectionAvailable {
  return coreOf(self)->CoreManager::isConnectionAvailable();
}

- (void)setConnectionAvaiable:(BOOL)available {
  // The variable is what key-value coding reads; services write it from their threads.
  __atomic_store_n(&_connectionAvaiable, available, __ATOMIC_RELAXED);
  coreOf(self)->CoreManager::setConnectionAvaiable(available);
}

- (PLVInAppClient*)paymentClient {
  return original(coreOf(self)->paymentClient());
}

- (void)setPaymentClient:(PLVInAppClient*)paymentClient {
  coreOf(self)->setPaymentClient(adapted<InAppClient>(paymentClient));
}

- (HLVSDKAPIManager*)apiManager {
  return original(coreOf(self)->apiManager());
}

- (void)setApiManager:(HLVSDKAPIManager*)apiManager {
  coreOf(self)->setApiManager(adapted<APIManager>(apiManager));
}

- (HLVSDKReachability*)reachability {
  return original(coreOf(self)->reachability());
}

- (void)setReachability:(HLVSDKReachability*)reachability {
  coreOf(self)->setReachability(adapted<Reachability>(reachability));
}

- (void)handleReachabilityChangedNotification:(NSNotification*)notification {
  coreOf(self)->handleReachabilityChangedNotification(hlv::objc::fromNSNotification(notification));
}

- (BOOL)validateBillingAddress:(HLVSDKPaymentBillingAddress*)billingAddress error:(NSError**)error {
  hlv::ErrorPtr reason;
  if (coreOf(self)->validateBillingAddress(adapted<BillingAddress>(billingAddress), &reason)) {
    return !*error;
  }
  if (error) *error = hlv::objc::toNSError(reason);
  return NO;
}

- (void)addPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
              billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress
                    forGuest:(HLVSDKGuest*)guest
                  completion:(GuestCardBlock)report {
  coreOf(self)->addPaymentInstrument(adapted<EnteredCard>(paymentInstrument),
                                     adapted<BillingAddress>(billingAddress), adapted<Guest>(guest),
                                     completion<HLVSDKGuestCardCompletion>(report));
}

- (void)addFirstPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
                   billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress
                         forGuest:(HLVSDKGuest*)guest
                       completion:(GuestCardBlock)report {
  coreOf(self)->CoreManager::addFirstPaymentInstrument(
      adapted<EnteredCard>(paymentInstrument), adapted<BillingAddress>(billingAddress),
      adapted<Guest>(guest), completion<HLVSDKGuestCardCompletion>(report));
}

- (void)addFirstPaymentInstrumentToPayleven:(HLVSDKPaymentInstrument*)paymentInstrument
                              forGuestEmail:(NSString*)email
                                 completion:(InstrumentBlock)report {
  coreOf(self)->CoreManager::addFirstPaymentInstrumentToPayleven(
      adapted<EnteredCard>(paymentInstrument), fromNSString(email),
      completion<HLVSDKPaylevenInstrumentCompletion>(report));
}

- (void)addNewPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
                 billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress
                       forGuest:(HLVSDKGuest*)guest
                     completion:(GuestCardBlock)report {
  coreOf(self)->CoreManager::addNewPaymentInstrument(
      adapted<EnteredCard>(paymentInstrument), adapted<BillingAddress>(billingAddress),
      adapted<Guest>(guest), completion<HLVSDKGuestCardCompletion>(report));
}

- (void)addNewPaymentInstrumentToPayleven:(HLVSDKPaymentInstrument*)paymentInstrument
                        withPaylevenToken:(NSString*)paylevenToken
                               completion:(InstrumentBlock)report {
  coreOf(self)->CoreManager::addNewPaymentInstrumentToPayleven(
      adapted<EnteredCard>(paymentInstrument), fromNSString(paylevenToken),
      completion<HLVSDKPaylevenInstrumentCompletion>(report));
}

- (void)processAddedPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
                        paylevenToken:(NSString*)paylevenToken
                           completion:(InstrumentBlock)report {
  coreOf(self)->CoreManager::processAddedPaymentInstrument(
      adapted<EnteredCard>(paymentInstrument), fromNSString(paylevenToken),
      completion<HLVSDKPaylevenInstrumentCompletion>(report));
}

- (void)deletePaymentInstrumentWithID:(NSString*)ID
                              useCase:(NSString*)useCase
                            fromGuest:(HLVSDKGuest*)guest
                           completion:(GuestBlock)report {
  coreOf(self)->deletePaymentInstrumentWithID(fromNSString(ID), fromNSString(useCase),
                                              adapted<Guest>(guest),
                                              completion<HLVSDKGuestCompletion>(report));
}

- (void)updatePaymentInstrument:(NSString*)ID
                 billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress
                       forGuest:(HLVSDKGuest*)guest
                     completion:(GuestCardBlock)report {
  coreOf(self)->updatePaymentInstrument(fromNSString(ID), adapted<BillingAddress>(billingAddress),
                                        adapted<Guest>(guest),
                                        completion<HLVSDKGuestCardCompletion>(report));
}

@end
