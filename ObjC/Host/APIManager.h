// The host's client of its backend, as the core calls it.
//
// Threading: as the client.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "ObjC/Binding/Held.h"

namespace hlv::objc {

class APIManager final : public Adapter<HLVSDKAPIManager, ::HLVSDKAPIManager*> {
 public:
  using Adapter::Adapter;
  void updateCurrentGuestWithRequest(const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
                                     HLVSDKGuestCompletion completion) override;
  void addCreditCardForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                             const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& requestInfo,
                             HLVSDKGuestCardCompletion completion) override;
  void deleteCreditCardWithID(const NullableString& ID, const std::shared_ptr<HLVSDKGuest>& guest,
                              HLVSDKGuestCompletion completion) override;
  /// The app's own block goes to the client as it is.
  void updateCreditCard(const NullableString& ID, const Dictionary& address,
                        const std::shared_ptr<HLVSDKGuest>& guest,
                        HLVSDKGuestCardCompletion completion) override;
  void fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                             HLVSDKCreditCardsCompletion completion) override;
};

}  // namespace hlv::objc
