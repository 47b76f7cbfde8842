// The payment provider's client, as an Objective-C app calls it.
#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "ObjC/HostClasses/PlayedHost.h"
#include "ObjC/HostClasses/Reply.h"
#include "Values/Send.h"

using hlv::objc::fromNSString;
using hlv::host_classes::replyTo;
using hlv::host_classes::behind;
using hlv::host_classes::playedHost;
using Instrument = hlv::PLVCreditCardPaymentInstrument;

namespace {

std::shared_ptr<hlv::PLVInAppClient> provider() {
  return hlv::send(playedHost(), &hlv::Host::inAppClient);
}

}  // namespace

@implementation PLVInAppClient

+ (PLVInAppClient*)sharedInstance {
  static PLVInAppClient* const client = [PLVInAppClient new];
  return provider() ? client : nil;
}

- (void)registerWithAPIKey:(NSString*)key {
  hlv::send(provider(), &hlv::PLVInAppClient::registerWithAPIKey, fromNSString(key));
}

- (void)createUserToken:(NSString*)email
    withPaymentInstrument:(PLVPaymentInstrument*)paymentInstrument
               andUseCase:(NSString*)useCase
            andCompletion:(void (^)(NSString*, NSError*))completion {
  hlv::send(provider(), &hlv::PLVInAppClient::createUserToken, fromNSString(email),
            behind<Instrument>(paymentInstrument), fromNSString(useCase), replyTo(completion));
}

- (void)addPaymentInstrument:(PLVPaymentInstrument*)paymentInstrument
                forUserToken:(NSString*)userToken
                  andUseCase:(NSString*)useCase
               andCompletion:(void (^)(NSError*))completion {
  hlv::send(provider(), &hlv::PLVInAppClient::addPaymentInstrument,
            behind<Instrument>(paymentInstrument), fromNSString(userToken), fromNSString(useCase),
            replyTo(completion));
}

- (void)getPaymentInstrumentsList:(NSString*)userToken
                       andUseCase:(NSString*)useCase
                    andCompletion:
                        (void (^)(NSArray<PLVCreditCardPaymentInstrument*>*, NSError*))completion {
  hlv::send(provider(), &hlv::PLVInAppClient::getPaymentInstrumentsList, fromNSString(userToken),
            fromNSString(useCase), replyTo(completion));
}

- (void)removePaymentInstrument:(PLVPaymentInstrument*)paymentInstrument
                    fromUseCase:(NSString*)useCase
                   forUserToken:(NSString*)userToken
                  andCompletion:(void (^)(NSError*))completion {
  hlv::send(provider(), &hlv::PLVInAppClient::removePaymentInstrument,
            behind<Instrument>(paymentInstrument), fromNSString(useCase), fromNSString(userToken),
            replyTo(completion));
}

@end
