// The sandbox's backend, as an Objective-C app calls it.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKUpdateGuestRequestInfo.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Sandbox/Answer.h"
#include "ObjC/Sandbox/OpenSandbox.h"
#include "ObjC/Sandbox/SandboxAddCardRequest.h"
#include "Values/Send.h"

using hlv::objc::fromNSDictionary;
using hlv::objc::fromNSString;
using hlv::sandbox::objc::answerTo;
using hlv::sandbox::objc::behind;
using hlv::sandbox::objc::forwarded;
using hlv::sandbox::objc::openHost;

namespace {

std::shared_ptr<hlv::HLVSDKAPIManager> backend() {
  return hlv::send(openHost(), &hlv::Host::apiManager);
}

}  // namespace

@implementation HLVSDKAPIManager

+ (HLVSDKAPIManager*)manager {
  static HLVSDKAPIManager* const manager = [HLVSDKAPIManager new];
  return backend() ? manager : nil;
}

- (void)updateCurrentGuestWithRequest:(HLVSDKUpdateGuestRequestInfo*)request
                           completion:(void (^)(HLVSDKGuest*, NSError*))completion {
  hlv::send(backend(), &hlv::HLVSDKAPIManager::updateCurrentGuestWithRequest,
            behind<hlv::HLVSDKUpdateGuestRequestInfo>(request), answerTo(completion));
}

- (void)addCreditCardForGuest:(HLVSDKGuest*)guest
              withRequestInfo:(HLVSDKAddCreditCardRequestInfo*)requestInfo
                   completion:(void (^)(HLVSDKGuest*, HLVSDKCreditCard*, NSError*))completion {
  hlv::send(backend(), &hlv::HLVSDKAPIManager::addCreditCardForGuest,
            behind<hlv::HLVSDKGuest>(guest), forwarded(requestInfo), answerTo(completion));
}

- (void)deleteCreditCardWithID:(NSString*)ID
                     fromGuest:(HLVSDKGuest*)guest
                    completion:(void (^)(HLVSDKGuest*, NSError*))completion {
  hlv::send(backend(), &hlv::HLVSDKAPIManager::deleteCreditCardWithID, fromNSString(ID),
            behind<hlv::HLVSDKGuest>(guest), answerTo(completion));
}

- (void)updateCreditCard:(NSString*)ID
          billingAddress:(NSDictionary<NSString*, id>*)billingAddress
                forGuest:(HLVSDKGuest*)guest
              completion:(void (^)(HLVSDKGuest*, HLVSDKCreditCard*, NSError*))completion {
  hlv::send(backend(), &hlv::HLVSDKAPIManager::updateCreditCard, fromNSString(ID),
            fromNSDictionary(billingAddress), behind<hlv::HLVSDKGuest>(guest),
            answerTo(completion));
}

- (void)fetchGuestCreditCards:(HLVSDKGuest*)guest
                   completion:(void (^)(NSArray<HLVSDKCreditCard*>*, NSError*))completion {
  hlv::send(backend(), &hlv::HLVSDKAPIManager::fetchGuestCreditCards,
            behind<hlv::HLVSDKGuest>(guest), answerTo(completion));
}

@end
