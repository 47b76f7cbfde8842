// The host's client of its backend, as the core calls it.
//
// Threading: as the client.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include <memory>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Host/Completions.h"
#include "ObjC/Host/RequestBody.h"

namespace hlv::objc {

class APIManager final : public Adapter<HLVSDKAPIManager, ::HLVSDKAPIManager*> {
 public:
  using Adapter::Adapter;
  void updateCurrentGuestWithRequest(const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
                                     HLVSDKGuestCompletion completion) override {
    [object() updateCurrentGuestWithRequest:original(request)
                                 completion:asBlock(std::move(completion)).block()];
  }
  void addCreditCardForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                             const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& requestInfo,
                             HLVSDKGuestCardCompletion completion) override {
    [object() addCreditCardForGuest:original(guest)
                    withRequestInfo:handOut(requestInfo)
                         completion:asBlock(std::move(completion)).block()];
  }
  void deleteCreditCardWithID(const NullableString& ID, const std::shared_ptr<HLVSDKGuest>& guest,
                              HLVSDKGuestCompletion completion) override {
    [object() deleteCreditCardWithID:toNSString(ID)
                           fromGuest:original(guest)
                          completion:asBlock(std::move(completion)).block()];
  }
  /// The app's own block goes to the client as it is.
  void updateCreditCard(const NullableString& ID, const Dictionary& address,
                        const std::shared_ptr<HLVSDKGuest>& guest,
                        HLVSDKGuestCardCompletion completion) override {
    [object() updateCreditCard:toNSString(ID)
                billingAddress:toNSDictionary(address)
                      forGuest:original(guest)
                    completion:asBlock(std::move(completion)).block()];
  }
  void fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                             HLVSDKCreditCardsCompletion completion) override {
    [object() fetchGuestCreditCards:original(guest)
                         completion:asBlock(std::move(completion)).block()];
  }
};

}  // namespace hlv::objc
