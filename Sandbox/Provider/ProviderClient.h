// The sandbox's client of its payment provider. Private to the sandbox.
#pragma once

#include <atomic>
#include <memory>

#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Sandbox/Calls/Service.h"

namespace hlv::sandbox {

/// Completes on the provider's thread.
///
/// Threading: any.
class ProviderClient final : public PLVInAppClient {
 public:
  explicit ProviderClient(const Service::Surroundings& surroundings);

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
  /// Whether the app has registered with a key; what waits for its turn refers to it.
  const std::shared_ptr<std::atomic<bool>> isRegistered_ =
      std::make_shared<std::atomic<bool>>(false);
  const Service service_;
};

}  // namespace hlv::sandbox
