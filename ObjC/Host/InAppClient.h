// The payment provider's client, as the core calls it.
//
// Threading: as the client.
#pragma once

#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

#include <memory>

#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "ObjC/Binding/Held.h"

namespace hlv::objc {

class InAppClient final : public Adapter<PLVInAppClient, ::PLVInAppClient*> {
 public:
  using Adapter::Adapter;
  void registerWithAPIKey(const NullableString& key) override;
  void createUserToken(const NullableString& email,
                       const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                       const NullableString& useCase, PLVUserTokenCompletion completion) override;
  void addPaymentInstrument(const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                            const NullableString& userToken, const NullableString& useCase,
                            PLVErrorCompletion completion) override;
  void getPaymentInstrumentsList(const NullableString& userToken, const NullableString& useCase,
                                 PLVPaymentInstrumentsCompletion completion) override;
  void removePaymentInstrument(const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                               const NullableString& useCase, const NullableString& userToken,
                               PLVErrorCompletion completion) override;
};

}  // namespace hlv::objc
