#include "Sandbox/Provider/ProviderClient.h"

#include <atomic>

#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/Provider/CardInstruments.h"
#include "Sandbox/Provider/Provider.h"

namespace hlv::sandbox {
namespace {

using Instrument = std::shared_ptr<PLVCreditCardPaymentInstrument>;
using TokenResults = std::tuple<NullableString, ErrorPtr>;
using ListResults = std::tuple<NullableList<PLVCreditCardPaymentInstrument>, ErrorPtr>;
using NoResults = std::tuple<ErrorPtr>;
using IsRegistered = std::shared_ptr<std::atomic<bool>>;

void requireRegistration(const IsRegistered& isRegistered) {
  if (!*isRegistered) provider::refuseUnregistered();
}

/// The card of an instrument that was made from one, which must be held meanwhile; null for
/// another.
const EnteredCard* cardOf(const Instrument& instrument) {
  const auto shown = std::dynamic_pointer_cast<NewInstrument>(instrument);
  return shown ? &shown->card() : nullptr;
}

/// Completes on the provider's thread.
class ProviderClient final : public PLVInAppClient {
 public:
  explicit ProviderClient(const Service::Surroundings& surroundings)
      : service_("provider", providerErrorDomain, ServiceThread::provider, surroundings) {}

  void registerWithAPIKey(const NullableString& key) override {
    service_.recordOneWayCall("registerWithAPIKey");
    *isRegistered_ = length(key) > 0;
  }

  void createUserToken(const NullableString& email, const Instrument& instrument,
                       const NullableString& useCase, PLVUserTokenCompletion completion) override {
    service_.take({Operation::createUserToken, useCase}, std::move(completion),
                  [isRegistered = isRegistered_, email, instrument, useCase](
                      Database& database, std::optional<FaultKind> fault) {
                    requireRegistration(isRegistered);
                    return TokenResults(provider::createUserToken(
                                            database, email, cardOf(instrument), useCase, fault),
                                        nullptr);
                  });
  }

  void addPaymentInstrument(const Instrument& instrument, const NullableString& userToken,
                            const NullableString& useCase, PLVErrorCompletion completion) override {
    service_.take({Operation::addInstrument, useCase}, std::move(completion),
                  [isRegistered = isRegistered_, instrument, userToken, useCase](
                      Database& database, std::optional<FaultKind> fault) {
                    requireRegistration(isRegistered);
                    provider::addInstrument(database, cardOf(instrument), userToken, useCase,
                                            fault);
                    return NoResults();
                  });
  }

  void getPaymentInstrumentsList(const NullableString& userToken, const NullableString& useCase,
                                 PLVPaymentInstrumentsCompletion completion) override {
    service_.take(
        {Operation::listInstruments, useCase}, std::move(completion),
        [isRegistered = isRegistered_, userToken, useCase](Database& database,
                                                           std::optional<FaultKind> fault) {
          requireRegistration(isRegistered);
          auto stored = provider::listInstruments(database, userToken, useCase, fault);
          if (!stored) return ListResults();
          List<PLVCreditCardPaymentInstrument> instruments;
          for (auto& [number, values] : *stored) {
            instruments.push_back(std::make_shared<ListedInstrument>(number, std::move(values)));
          }
          return ListResults(std::move(instruments), nullptr);
        });
  }

  void removePaymentInstrument(const Instrument& instrument, const NullableString& useCase,
                               const NullableString& userToken,
                               PLVErrorCompletion completion) override {
    std::optional<provider::NamedInstrument> named;
    if (instrument) {
      const auto listed = std::dynamic_pointer_cast<ListedInstrument>(instrument);
      named = {listed ? listed->row() : 0, instrument->identifier()};
    }
    service_.take(
        {Operation::removeInstrument, useCase, named ? named->identifier.value_or("") : ""},
        std::move(completion),
        [isRegistered = isRegistered_, named, useCase, userToken](Database& database, auto) {
          requireRegistration(isRegistered);
          provider::removeInstrument(database, named, useCase, userToken);
          return NoResults();
        });
  }

 private:
  /// Whether the app has registered with a key; what waits for its turn refers to it.
  const IsRegistered isRegistered_ = std::make_shared<std::atomic<bool>>(false);
  const Service service_;
};

}  // namespace

std::shared_ptr<PLVInAppClient> makeProviderClient(const Service::Surroundings& surroundings) {
  return std::make_shared<ProviderClient>(surroundings);
}

}  // namespace hlv::sandbox
