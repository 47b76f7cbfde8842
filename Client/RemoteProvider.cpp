#include <utility>

#include "Client/RemoteService.h"
#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/JSON/InstrumentRecords.h"
#include "Sandbox/Provider/CardInstruments.h"
#include "Values/Mutex.h"
#include "Values/Send.h"

namespace hlv::client {
namespace {

using sandbox::Operation;
using sandbox::orNull;
using sandbox::ProviderErrorCode;
using Instrument = std::shared_ptr<PLVCreditCardPaymentInstrument>;

[[noreturn]] void refuse(ProviderErrorCode code, const std::string& sentence) {
  throw sandbox::Refusal{sandbox::SandboxError::make(sandbox::providerErrorDomain, code, sentence)};
}

std::string userPath(const NullableString& token) {
  if (length(token) == 0) {
    refuse(ProviderErrorCode::unknownToken, "The provider does not know this user.");
  }
  return "/v1/users/" + percentEncoded(*token) + "/instruments";
}

std::string queryOf(const NullableString& useCase) {
  return useCase ? "?use_case=" + percentEncoded(*useCase) : "";
}

Json cardOf(const Instrument& instrument) {
  const auto shown = std::dynamic_pointer_cast<sandbox::NewInstrument>(instrument);
  if (!shown) refuse(ProviderErrorCode::malformedCard, "The request holds no new card.");
  return sandbox::newCardJson(shown->card());
}

ClientRequest creation(std::string target, Json body, NullableString key) {
  return {.method = "POST",
          .target = std::move(target),
          .body = std::move(body),
          .apiKey = std::move(key),
          .idempotencyKey = RemoteService::freshIdempotencyKey()};
}

/// Missing when the provider's reply lacks it on purpose.
NullableList<PLVCreditCardPaymentInstrument> instrumentsOf(const Json& body,
                                                           const std::string& useCase) {
  const auto* list = sandbox::nullableListIn(body, "instruments");
  if (!list) return std::nullopt;
  List<PLVCreditCardPaymentInstrument> instruments;
  for (const auto& item : *list) {
    auto [number, values] = sandbox::listedInstrumentIn(item, useCase);
    instruments.push_back(std::make_shared<sandbox::ListedInstrument>(number, std::move(values)));
  }
  return instruments;
}

/// Whether nothing failed is all that there is to read.
std::tuple<ErrorPtr> noError(const Json&) { return {}; }

/// Takes the instruments of the sandbox's host.
///
/// Threading: any.
class RemoteProvider final : public PLVInAppClient {
 public:
  explicit RemoteProvider(RemoteService service) : service_(std::move(service)) {}

  void registerWithAPIKey(const NullableString& key) override {
    service_.recordOneWayCall("registerWithAPIKey");
    const Lock lock(mutex_);
    key_ = key;
  }

  void createUserToken(const NullableString& email, const Instrument& instrument,
                       const NullableString& useCase, PLVUserTokenCompletion completion) override {
    service_.call(
        {Operation::createUserToken, useCase}, std::move(completion),
        [email, instrument, useCase, key = key()] {
          return creation("/v1/users",
                          {{"email", orNull(email)},
                           {"use_case", orNull(useCase)},
                           {"credit_card", cardOf(instrument)}},
                          key);
        },
        [](const Json& body) {
          return std::tuple<NullableString, ErrorPtr>(sandbox::nullableTextIn(body, "token"),
                                                      nullptr);
        });
  }

  void addPaymentInstrument(const Instrument& instrument, const NullableString& userToken,
                            const NullableString& useCase, PLVErrorCompletion completion) override {
    service_.call(
        {Operation::addInstrument, useCase}, std::move(completion),
        [instrument, userToken, useCase, key = key()] {
          return creation(userPath(userToken) + queryOf(useCase),
                          {{"credit_card", cardOf(instrument)}}, key);
        },
        noError);
  }

  void getPaymentInstrumentsList(const NullableString& userToken, const NullableString& useCase,
                                 PLVPaymentInstrumentsCompletion completion) override {
    service_.call(
        {Operation::listInstruments, useCase}, std::move(completion),
        [userToken, useCase, key = key()] {
          return ClientRequest{"GET", userPath(userToken) + queryOf(useCase), nullptr, key};
        },
        [useCase](const Json& body) {
          return std::tuple<NullableList<PLVCreditCardPaymentInstrument>, ErrorPtr>(
              instrumentsOf(body, useCase.value_or("")), nullptr);
        });
  }

  void removePaymentInstrument(const Instrument& instrument, const NullableString& useCase,
                               const NullableString& userToken,
                               PLVErrorCompletion completion) override {
    const auto identifier = send(instrument, &PLVCreditCardPaymentInstrument::identifier);
    const auto listed = std::dynamic_pointer_cast<sandbox::ListedInstrument>(instrument);
    service_.call(
        {Operation::removeInstrument, useCase, identifier.value_or("")}, std::move(completion),
        [identifier, row = listed ? listed->row() : 0, useCase, userToken, key = key()] {
          auto path = userPath(userToken);
          if (length(identifier) > 0) {
            path += "/" + percentEncoded(*identifier) + queryOf(useCase);
          } else if (row > 0) {
            path += queryOf(useCase);
            path += (useCase ? "&number=" : "?number=") + std::to_string(row);
          } else {
            refuse(ProviderErrorCode::invalidRequest, "The request names no instrument.");
          }
          return ClientRequest{"DELETE", path, nullptr, key};
        },
        noError);
  }

 private:
  NullableString key() const {
    const Lock lock(mutex_);
    return key_;
  }

  const RemoteService service_;
  mutable Mutex mutex_;
  NullableString key_ HLV_GUARDED_BY(mutex_);
};

}  // namespace

std::shared_ptr<PLVInAppClient> remoteProvider(RemoteService service) {
  return std::make_shared<RemoteProvider>(std::move(service));
}

}  // namespace hlv::client
