// The payment provider's client, as the core calls it.
//
// Threading: as the client.
#pragma once

#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

#include <memory>
#include <utility>

#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "ObjC/Host/Completions.h"

namespace hlv::objc {

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

}  // namespace hlv::objc
