#include "Sandbox/Provider/ProviderClient.h"

#include "Sandbox/ErrorCodes.h"

namespace hlv::sandbox {

ProviderClient::ProviderClient(std::shared_ptr<Provider> provider,
                               const Service::Surroundings& surroundings)
    : provider_(std::move(provider)),
      service_("provider", providerErrorDomain, Lane::provider, surroundings) {}

void ProviderClient::registerWithAPIKey(const NullableString& key) {
  service_.hear("registerWithAPIKey");
  provider_->registerKey(key);
}

void ProviderClient::createUserToken(
    const NullableString& email, const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
    const NullableString& useCase, PLVUserTokenCompletion completion) {
  service_.take({"createUserToken", useCase, ""}, std::move(completion),
                [provider = provider_, email, instrument, useCase](const std::string& variation) {
                  return provider->createUserToken(email, instrument, useCase, variation);
                });
}

void ProviderClient::addPaymentInstrument(
    const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
    const NullableString& userToken, const NullableString& useCase, PLVErrorCompletion completion) {
  service_.take(
      {"addPaymentInstrument", useCase, ""}, std::move(completion),
      [provider = provider_, instrument, userToken, useCase](const std::string& variation) {
        return provider->addInstrument(instrument, userToken, useCase, variation);
      });
}

void ProviderClient::getPaymentInstrumentsList(const NullableString& userToken,
                                               const NullableString& useCase,
                                               PLVPaymentInstrumentsCompletion completion) {
  service_.take({"getPaymentInstrumentsList", useCase, ""}, std::move(completion),
                [provider = provider_, userToken, useCase](const std::string& variation) {
                  return provider->listInstruments(userToken, useCase, variation);
                });
}

void ProviderClient::removePaymentInstrument(
    const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
    const NullableString& useCase, const NullableString& userToken, PLVErrorCompletion completion) {
  const auto identifier = instrument ? instrument->identifier() : std::nullopt;
  service_.take({"removePaymentInstrument", useCase, identifier.value_or("")},
                std::move(completion),
                [provider = provider_, instrument, useCase, userToken](const std::string&) {
                  return provider->removeInstrument(instrument, useCase, userToken);
                });
}

}  // namespace hlv::sandbox
