#include "Services/Remote/RemoteProvider.h"

#include "Platform/Send.h"
#include "Sandbox/ErrorCodes.h"
#include "Sandbox/Provider/CardInstruments.h"
#include "Services/Http/Percent.h"
#include "Services/ProviderRecords.h"

namespace hlv::services {
namespace {

using sandbox::ProviderErrorCode;
using Instrument = std::shared_ptr<PLVCreditCardPaymentInstrument>;

[[noreturn]] void refuse(ProviderErrorCode code, const std::string& sentence) {
  throw sandbox::Refusal{sandbox::SandboxError::make(sandbox::providerErrorDomain, code, sentence)};
}

std::string told(std::string operation, const NullableString& useCase) {
  return useCase ? std::move(operation) + " use case " + *useCase : operation;
}

std::string pathOf(const NullableString& token) {
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
  return newCardJson(shown->card());
}

/// Whether nothing failed is all that there is to read.
std::tuple<ErrorPtr> noError(const Json&) { return {}; }

}  // namespace

void RemoteProvider::registerWithAPIKey(const NullableString& key) {
  service_.hear("registerWithAPIKey");
  const std::lock_guard lock(mutex_);
  key_ = key;
}

NullableString RemoteProvider::key() const {
  const std::lock_guard lock(mutex_);
  return key_;
}

ClientRequest RemoteProvider::listRequest(const NullableString& userToken,
                                          const NullableString& useCase,
                                          const NullableString& key) {
  return {"GET", pathOf(userToken) + queryOf(useCase), nullptr, key};
}

void RemoteProvider::createUserToken(const NullableString& email, const Instrument& instrument,
                                     const NullableString& useCase,
                                     PLVUserTokenCompletion completion) {
  service_.take(
      told("createUserToken", useCase), std::move(completion),
      [email, instrument, useCase, key = key()] {
        return ClientRequest{"POST",
                             "/v1/users",
                             {{"email", orNull(email)},
                              {"use_case", orNull(useCase)},
                              {"credit_card", cardOf(instrument)}},
                             key};
      },
      [](const Json& body) {
        const auto& token = body.at("token");
        return std::tuple<NullableString, ErrorPtr>(
            token.is_null() ? std::nullopt : NullableString(token.get<std::string>()), nullptr);
      });
}

void RemoteProvider::addPaymentInstrument(const Instrument& instrument,
                                          const NullableString& userToken,
                                          const NullableString& useCase,
                                          PLVErrorCompletion completion) {
  service_.take(
      told("addPaymentInstrument", useCase), std::move(completion),
      [instrument, userToken, useCase, key = key()] {
        return ClientRequest{"POST",
                             pathOf(userToken) + queryOf(useCase),
                             {{"credit_card", cardOf(instrument)}},
                             key};
      },
      noError);
}

void RemoteProvider::getPaymentInstrumentsList(const NullableString& userToken,
                                               const NullableString& useCase,
                                               PLVPaymentInstrumentsCompletion completion) {
  service_.take(
      told("getPaymentInstrumentsList", useCase), std::move(completion),
      [userToken, useCase, key = key()] { return listRequest(userToken, useCase, key); },
      [useCase](const Json& body) {
        return std::tuple<NullableList<PLVCreditCardPaymentInstrument>, ErrorPtr>(
            instrumentsIn(body.at("instruments"), useCase.value_or("")), nullptr);
      });
}

void RemoteProvider::removePaymentInstrument(const Instrument& instrument,
                                             const NullableString& useCase,
                                             const NullableString& userToken,
                                             PLVErrorCompletion completion) {
  const auto identifier = send(instrument, &PLVCreditCardPaymentInstrument::identifier);
  const auto listed = std::dynamic_pointer_cast<sandbox::ListedInstrument>(instrument);
  service_.take(
      told("removePaymentInstrument" + (identifier ? " " + *identifier : ""), useCase),
      std::move(completion),
      [identifier, row = listed ? listed->row() : 0, useCase, userToken, key = key()] {
        auto path = pathOf(userToken);
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

}  // namespace hlv::services
