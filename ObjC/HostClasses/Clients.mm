// The clients of the host's backend and of the payment provider, as an Objective-C app calls them.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKUpdateGuestRequestInfo.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/HostClasses/PlayedHost.h"
#include "ObjC/HostClasses/Records.h"
#include "Values/Send.h"

using hlv::send;
using hlv::objc::fromNSDictionary;
using hlv::objc::fromNSString;
using hlv::host_classes::replyTo;
using hlv::host_classes::behind;
using hlv::host_classes::forwarded;
using hlv::host_classes::playedHost;
using Backend = hlv::HLVSDKAPIManager;
using Provider = hlv::PLVInAppClient;
using Instrument = hlv::PLVCreditCardPaymentInstrument;

namespace {

std::shared_ptr<hlv::HLVSDKAPIManager> backend() {
  return send(playedHost(), &hlv::Host::apiManager);
}

std::shared_ptr<hlv::PLVInAppClient> provider() {
  return send(playedHost(), &hlv::Host::inAppClient);
}

}  // namespace

@implementation HLVSDKAPIManager

+ (HLVSDKAPIManager*)manager {
  static HLVSDKAPIManager* const manager = [HLVSDKAPIManager new];
  return backend() ? manager : nil;
}

- (void)updateCurrentGuestWithRequest:(HLVSDKUpdateGuestRequestInfo*)request
                           completion:(void (^)(HLVSDKGuest*, NSError*))completion {
  send(backend(), &Backend::updateCurrentGuestWithRequest,
       behind<hlv::HLVSDKUpdateGuestRequestInfo>(request), replyTo(completion));
}

- (void)addCreditCardForGuest:(HLVSDKGuest*)guest
              withRequestInfo:(HLVSDKAddCreditCardRequestInfo*)requestInfo
                   completion:(void (^)(HLVSDKGuest*, HLVSDKCreditCard*, NSError*))completion {
  send(backend(), &Backend::addCreditCardForGuest, behind<hlv::HLVSDKGuest>(guest),
       forwarded(requestInfo), replyTo(completion));
}

- (void)deleteCreditCardWithID:(NSString*)ID
                     fromGuest:(HLVSDKGuest*)guest
                    completion:(void (^)(HLVSDKGuest*, NSError*))completion {
  send(backend(), &Backend::deleteCreditCardWithID, fromNSString(ID),
       behind<hlv::HLVSDKGuest>(guest), replyTo(completion));
}

- (void)updateCreditCard:(NSString*)ID
          billingAddress:(NSDictionary<NSString*, id>*)billingAddress
                forGuest:(HLVSDKGuest*)guest
              completion:(void (^)(HLVSDKGuest*, HLVSDKCreditCard*, NSError*))completion {
  send(backend(), &Backend::updateCreditCard, fromNSString(ID), fromNSDictionary(billingAddress),
       behind<hlv::HLVSDKGuest>(guest), replyTo(completion));
}

- (void)fetchGuestCreditCards:(HLVSDKGuest*)guest
                   completion:(void (^)(NSArray<HLVSDKCreditCard*>*, NSError*))completion {
  send(backend(), &Backend::fetchGuestCreditCards, behind<hlv::HLVSDKGuest>(guest),
       replyTo(completion));
}

@end

@implementation PLVInAppClient

+ (PLVInAppClient*)sharedInstance {
  static PLVInAppClient* const client = [PLVInAppClient new];
  return provider() ? client : nil;
}

- (void)registerWithAPIKey:(NSString*)key {
  send(provider(), &Provider::registerWithAPIKey, fromNSString(key));
}

- (void)createUserToken:(NSString*)email
    withPaymentInstrument:(PLVPaymentInstrument*)paymentInstrument
               andUseCase:(NSString*)useCase
            andCompletion:(void (^)(NSString*, NSError*))completion {
  send(provider(), &Provider::createUserToken, fromNSString(email),
       behind<Instrument>(paymentInstrument), fromNSString(useCase), replyTo(completion));
}

- (void)addPaymentInstrument:(PLVPaymentInstrument*)paymentInstrument
                forUserToken:(NSString*)userToken
                  andUseCase:(NSString*)useCase
               andCompletion:(void (^)(NSError*))completion {
  send(provider(), &Provider::addPaymentInstrument, behind<Instrument>(paymentInstrument),
       fromNSString(userToken), fromNSString(useCase), replyTo(completion));
}

- (void)getPaymentInstrumentsList:(NSString*)userToken
                       andUseCase:(NSString*)useCase
                    andCompletion:
                        (void (^)(NSArray<PLVCreditCardPaymentInstrument*>*, NSError*))completion {
  send(provider(), &Provider::getPaymentInstrumentsList, fromNSString(userToken),
       fromNSString(useCase), replyTo(completion));
}

- (void)removePaymentInstrument:(PLVPaymentInstrument*)paymentInstrument
                    fromUseCase:(NSString*)useCase
                   forUserToken:(NSString*)userToken
                  andCompletion:(void (^)(NSError*))completion {
  send(provider(), &Provider::removePaymentInstrument, behind<Instrument>(paymentInstrument),
       fromNSString(useCase), fromNSString(userToken), replyTo(completion));
}

@end
