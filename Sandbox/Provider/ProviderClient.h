// The sandbox's client of its payment provider. Private to the sandbox.
#pragma once

#include <memory>

#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Sandbox/Provider/Provider.h"
#include "Sandbox/Service/Service.h"

namespace hlv::sandbox {

/// Answers on the provider's thread.
///
/// Threading: any.
class ProviderClient final : public PLVInAppClient {
 public:
  ProviderClient(std::shared_ptr<Provider> provider, const Service::Surroundings& surroundings);

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

 private:
  const std::shared_ptr<Provider> provider_;
  const Service service_;
};

}  // namespace hlv::sandbox
