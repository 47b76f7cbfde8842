// The host's backend client, as an Objective-C app calls it.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKUpdateGuestRequestInfo.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/HostClasses/AddCardRequest.h"
#include "ObjC/HostClasses/PlayedHost.h"
#include "ObjC/HostClasses/Reply.h"
#include "Values/Send.h"

using hlv::objc::fromNSDictionary;
using hlv::objc::fromNSString;
using hlv::host_classes::replyTo;
using hlv::host_classes::behind;
using hlv::host_classes::forwarded;
using hlv::host_classes::playedHost;

namespace {

std::shared_ptr<hlv::HLVSDKAPIManager> backend() {
  return hlv::send(playedHost(), &hlv::Host::apiManager);
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
            behind<hlv::HLVSDKUpdateGuestRequestInfo>(request), replyTo(completion));
}

- (void)addCreditCardForGuest:(HLVSDKGuest*)guest
              withRequestInfo:(HLVSDKAddCreditCardRequestInfo*)requestInfo
                   completion:(void (^)(HLVSDKGuest*, HLVSDKCreditCard*, NSError*))completion {
  hlv::send(backend(), &hlv::HLVSDKAPIManager::addCreditCardForGuest,
            behind<hlv::HLVSDKGuest>(guest), forwarded(requestInfo), replyTo(completion));
}

- (void)deleteCreditCardWithID:(NSString*)ID
                     fromGuest:(HLVSDKGuest*)guest
                    completion:(void (^)(HLVSDKGuest*, NSError*))completion {
  hlv::send(backend(), &hlv::HLVSDKAPIManager::deleteCreditCardWithID, fromNSString(ID),
            behind<hlv::HLVSDKGuest>(guest), replyTo(completion));
}

- (void)updateCreditCard:(NSString*)ID
          billingAddress:(NSDictionary<NSString*, id>*)billingAddress
                forGuest:(HLVSDKGuest*)guest
              completion:(void (^)(HLVSDKGuest*, HLVSDKCreditCard*, NSError*))completion {
  hlv::send(backend(), &hlv::HLVSDKAPIManager::updateCreditCard, fromNSString(ID),
            fromNSDictionary(billingAddress), behind<hlv::HLVSDKGuest>(guest), replyTo(completion));
}

- (void)fetchGuestCreditCards:(HLVSDKGuest*)guest
                   completion:(void (^)(NSArray<HLVSDKCreditCard*>*, NSError*))completion {
  hlv::send(backend(), &hlv::HLVSDKAPIManager::fetchGuestCreditCards,
            behind<hlv::HLVSDKGuest>(guest), replyTo(completion));
}

@end
