// The clients of the host's backend and of the payment provider, and the synchroniser, the kit's or
// one that an app puts in its place, as the core calls them; and completions of the core as the
// blocks that they take.
//
// Threading: as the objects. A block may be called on any thread, and brings a pool with it.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKAddPaylevenCreditCardRequestInfo.h>
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/HLVSDKPLVPaymentInstrument.h>
#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrumentsSynchronizer.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Models/HLVSDKAddPaylevenCreditCardRequestInfo.h"
#include "ObjC/Binding/Blocks.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Host/Records.h"

namespace hlv::objc {

using GuestBlock = void (^)(::HLVSDKGuest*, NSError*);
using GuestCardBlock = void (^)(::HLVSDKGuest*, ::HLVSDKCreditCard*, NSError*);
using SuccessBlock = void (^)(BOOL, NSError*);
using InstrumentBlock = void (^)(NSString*, ::PLVCreditCardPaymentInstrument*, NSError*);
using PairsBlock = void (^)(NSArray<::HLVSDKPLVPaymentInstrument*>*, NSError*);

template <class Result>
using Crossed = decltype(crossing(std::declval<Result>()));

// Every source has blocks of its own; this is there once.
template <class... Results>
[[gnu::noinline]] void call(const std::function<void(Results...)>& completion,
                            Crossed<Results>... results) {
  @autoreleasepool {
    completion(asCore(results, As<Results>())...);
  }
}

/// An empty completion is nil, and one that was made of a block is that very block.
template <class... Results>
auto asBlock(std::function<void(Results...)> completion) {
  using Block = void (^)(Crossed<Results>...);
  if (!completion) return CopiedBlock<Block>(nil);
  if (Block original = originalBlock<Block>(completion)) return CopiedBlock<Block>(original);
  return CopiedBlock<Block>(^(Crossed<Results>... results) {
    call<Results...>(completion, results...);
  });
}

/// What the Objective-C request is made of, once the core hands it out.
class RequestBody final : public HLVSDKAddCreditCardRequestBody {
 public:
  RequestBody(std::shared_ptr<HLVSDKPaymentInstrument> instrument,
              std::shared_ptr<HLVSDKPaymentBillingAddress> address)
      : instrument_(std::move(instrument)), address_(std::move(address)) {}

  /// The object marks itself.
  void setProvider(std::int64_t) override {}
  Dictionary JSONRepresentation() const override {
    return fromNSDictionary([requestWithToken(std::nullopt) JSONRepresentation]);
  }
  bool isValid(ErrorPtr* error) const override {
    NSError* reason = nil;
    const bool valid = [requestWithToken(std::nullopt) isValid:&reason];
    if (error && reason) *error = fromNSError(reason);
    return valid;
  }

  /// A new request; nil when the host base makes no object. Lives as long as its pool.
  ::HLVSDKAddPaylevenCreditCardRequestInfo* requestWithToken(const NullableString& token) const {
    return [[[::HLVSDKAddPaylevenCreditCardRequestInfo alloc]
        initWithPaymentInstrument:original(instrument_)
                   billingAddress:original(address_)
                    paylevenToken:toNSString(token)] autorelease];
  }

 private:
  const std::shared_ptr<HLVSDKPaymentInstrument> instrument_;
  const std::shared_ptr<HLVSDKPaymentBillingAddress> address_;
};

/// The request as the host's backend client gets it. Lives as long as its pool.
inline ::HLVSDKAddCreditCardRequestInfo* handOut(
    const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& request) {
  const auto kitRequest =
      std::dynamic_pointer_cast<HLVSDKAddPaylevenCreditCardRequestInfo>(request);
  if (!kitRequest) return nil;
  const auto* body = dynamic_cast<const RequestBody*>(kitRequest->body().get());
  return body ? body->requestWithToken(kitRequest->paylevenToken()) : nil;
}

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

class InAppClient final : public Adapter<PLVInAppClient, ::PLVInAppClient*> {
 public:
  using Adapter::Adapter;
  void registerWithAPIKey(const NullableString& key) override {
    [object() registerWithAPIKey:toNSString(key)];
  }
  void createUserToken(const NullableString& email,
                       const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                       const NullableString& useCase, PLVUserTokenCompletion completion) override {
    [object() createUserToken:toNSString(email)
        withPaymentInstrument:original(instrument)
                   andUseCase:toNSString(useCase)
                andCompletion:asBlock(std::move(completion)).block()];
  }
  void addPaymentInstrument(const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                            const NullableString& userToken, const NullableString& useCase,
                            PLVErrorCompletion completion) override {
    [object() addPaymentInstrument:original(instrument)
                      forUserToken:toNSString(userToken)
                        andUseCase:toNSString(useCase)
                     andCompletion:asBlock(std::move(completion)).block()];
  }
  void getPaymentInstrumentsList(const NullableString& userToken, const NullableString& useCase,
                                 PLVPaymentInstrumentsCompletion completion) override {
    [object() getPaymentInstrumentsList:toNSString(userToken)
                             andUseCase:toNSString(useCase)
                          andCompletion:asBlock(std::move(completion)).block()];
  }
  void removePaymentInstrument(const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                               const NullableString& useCase, const NullableString& userToken,
                               PLVErrorCompletion completion) override {
    [object() removePaymentInstrument:original(instrument)
                          fromUseCase:toNSString(useCase)
                         forUserToken:toNSString(userToken)
                        andCompletion:asBlock(std::move(completion)).block()];
  }
};

class InstrumentsSynchronizer final : public Adapter<HLVSDKPaymentInstrumentsSynchronizer,
                                                     id<HLVSDKPaymentInstrumentsSynchronizer>> {
 public:
  using Adapter::Adapter;
  void synchronizePaymentInstrumentsForGuest(const std::shared_ptr<HLVSDKGuest>& guest) override {
    [object() synchronizePaymentInstrumentsForGuest:original(guest)];
  }
  void synchronizePaymentInstrumentsForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                                             HLVSDKSuccessCompletion completion) override {
    [object() synchronizePaymentInstrumentsForGuest:original(guest)
                                         completion:asBlock(std::move(completion)).block()];
  }
};

}  // namespace hlv::objc
