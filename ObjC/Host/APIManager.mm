#include "ObjC/Host/APIManager.h"

#include "ObjC/Binding/Blocks.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Host/Records.h"
#include "ObjC/Host/RequestBody.h"

namespace hlv::objc {

using GuestCardBlock = void (^)(::HLVSDKGuest*, ::HLVSDKCreditCard*, NSError*);

void APIManager::updateCurrentGuestWithRequest(
    const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
    HLVSDKGuestCompletion completion) {
  [object() updateCurrentGuestWithRequest:original(request)
                               completion:^(::HLVSDKGuest* guest, NSError* error) {
                                 completion(adapted<Guest>(guest), fromNSError(error));
                               }];
}

void APIManager::addCreditCardForGuest(
    const std::shared_ptr<HLVSDKGuest>& guest,
    const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& requestInfo,
    HLVSDKGuestCardCompletion completion) {
  [object()
      addCreditCardForGuest:original(guest)
            withRequestInfo:handOut(requestInfo)
                 completion:^(::HLVSDKGuest* owner, ::HLVSDKCreditCard* card, NSError* error) {
                   completion(adapted<Guest>(owner), adapted<StoredCard>(card), fromNSError(error));
                 }];
}

void APIManager::deleteCreditCardWithID(const NullableString& ID,
                                        const std::shared_ptr<HLVSDKGuest>& guest,
                                        HLVSDKGuestCompletion completion) {
  [object() deleteCreditCardWithID:toNSString(ID)
                         fromGuest:original(guest)
                        completion:^(::HLVSDKGuest* updated, NSError* error) {
                          completion(adapted<Guest>(updated), fromNSError(error));
                        }];
}

void APIManager::updateCreditCard(const NullableString& ID, const Dictionary& address,
                                  const std::shared_ptr<HLVSDKGuest>& guest,
                                  HLVSDKGuestCardCompletion completion) {
  GuestCardBlock answer = ^(::HLVSDKGuest* owner, ::HLVSDKCreditCard* card, NSError* error) {
    completion(adapted<Guest>(owner), adapted<StoredCard>(card), fromNSError(error));
  };
  GuestCardBlock block = originalBlock<GuestCardBlock>(completion);
  if (!block && completion) block = answer;
  [object() updateCreditCard:toNSString(ID)
              billingAddress:toNSDictionary(address)
                    forGuest:original(guest)
                  completion:block];
}

void APIManager::fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                                       HLVSDKCreditCardsCompletion completion) {
  [object()
      fetchGuestCreditCards:original(guest)
                 completion:^(NSArray* cards, NSError* error) {
                   completion(adaptedList<StoredCard, HLVSDKCreditCard>(cards), fromNSError(error));
                 }];
}

}  // namespace hlv::objc
