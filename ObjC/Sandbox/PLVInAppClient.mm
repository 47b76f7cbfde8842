// The sandbox's payment provider, as an Objective-C app calls it.
#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "ObjC/Sandbox/Answer.h"
#include "ObjC/Sandbox/OpenSandbox.h"
#include "Values/Send.h"

using hlv::objc::fromNSString;
using hlv::sandbox::objc::answerTo;
using hlv::sandbox::objc::behind;
using hlv::sandbox::objc::openHost;
using Instrument = hlv::PLVCreditCardPaymentInstrument;

namespace {

std::shared_ptr<hlv::PLVInAppClient> provider() {
  return hlv::send(openHost(), &hlv::Host::inAppClient);
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
            behind<Instrument>(paymentInstrument), fromNSString(useCase), answerTo(completion));
}

- (void)addPaymentInstrument:(PLVPaymentInstrument*)paymentInstrument
                forUserToken:(NSString*)userToken
                  andUseCase:(NSString*)useCase
               andCompletion:(void (^)(NSError*))completion {
  hlv::send(provider(), &hlv::PLVInAppClient::addPaymentInstrument,
            behind<Instrument>(paymentInstrument), fromNSString(userToken), fromNSString(useCase),
            answerTo(completion));
}

- (void)getPaymentInstrumentsList:(NSString*)userToken
                       andUseCase:(NSString*)useCase
                    andCompletion:
                        (void (^)(NSArray<PLVCreditCardPaymentInstrument*>*, NSError*))completion {
  hlv::send(provider(), &hlv::PLVInAppClient::getPaymentInstrumentsList, fromNSString(userToken),
            fromNSString(useCase), answerTo(completion));
}

- (void)removePaymentInstrument:(PLVPaymentInstrument*)paymentInstrument
                    fromUseCase:(NSString*)useCase
                   forUserToken:(NSString*)userToken
                  andCompletion:(void (^)(NSError*))completion {
  hlv::send(provider(), &hlv::PLVInAppClient::removePaymentInstrument,
            behind<Instrument>(paymentInstrument), fromNSString(useCase), fromNSString(userToken),
            answerTo(completion));
}

@end
