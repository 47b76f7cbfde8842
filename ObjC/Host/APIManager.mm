#include "ObjC/Host/APIManager.h"

#include <utility>

#include "ObjC/Binding/Values.h"
#include "ObjC/Host/Completions.h"
#include "ObjC/Host/Records.h"
#include "ObjC/Host/RequestBody.h"

namespace hlv::objc {

void APIManager::updateCurrentGuestWithRequest(
    const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
    HLVSDKGuestCompletion completion) {
  [object() updateCurrentGuestWithRequest:original(request)
                               completion:asBlock(std::move(completion)).block()];
}

void APIManager::addCreditCardForGuest(
    const std::shared_ptr<HLVSDKGuest>& guest,
    const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& requestInfo,
    HLVSDKGuestCardCompletion completion) {
  [object() addCreditCardForGuest:original(guest)
                  withRequestInfo:handOut(requestInfo)
                       completion:asBlock(std::move(completion)).block()];
}

void APIManager::deleteCreditCardWithID(const NullableString& ID,
                                        const std::shared_ptr<HLVSDKGuest>& guest,
                                        HLVSDKGuestCompletion completion) {
  [object() deleteCreditCardWithID:toNSString(ID)
                         fromGuest:original(guest)
                        completion:asBlock(std::move(completion)).block()];
}

void APIManager::updateCreditCard(const NullableString& ID, const Dictionary& address,
                                  const std::shared_ptr<HLVSDKGuest>& guest,
                                  HLVSDKGuestCardCompletion completion) {
  [object() updateCreditCard:toNSString(ID)
              billingAddress:toNSDictionary(address)
                    forGuest:original(guest)
                  completion:asBlock(std::move(completion)).block()];
}

void APIManager::fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                                       HLVSDKCreditCardsCompletion completion) {
  [object() fetchGuestCreditCards:original(guest)
                       completion:asBlock(std::move(completion)).block()];
}

}  // namespace hlv::objc
