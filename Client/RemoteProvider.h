// The client of a provider in another process. Private to this folder.
#pragma once

#include <memory>
#include <mutex>

#include "Client/RemoteService.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"

namespace hlv::client {

/// Takes the instruments of the sandbox's host. The provider removes by identifier, so that an
/// instrument without one cannot be removed from here.
///
/// Threading: any.
class RemoteProvider final : public PLVInAppClient {
 public:
  explicit RemoteProvider(RemoteService service) : service_(std::move(service)) {}

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
  NullableString key() const;

  const RemoteService service_;
  mutable std::mutex mutex_;
  NullableString key_;
};

}  // namespace hlv::client
