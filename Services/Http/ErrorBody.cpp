#include "Services/Http/ErrorBody.h"

#include <algorithm>

#include "Sandbox/ErrorCodes.h"
#include "Sandbox/SandboxError.h"

namespace hlv::services {
namespace {

using sandbox::BackendErrorCode;
using sandbox::ProviderErrorCode;

struct Known {
  std::string_view domain;
  std::int64_t number;
  int status;
  const char* code;
};

template <class Code>
constexpr Known known(std::string_view domain, Code number, int status, const char* code) {
  return {domain, static_cast<std::int64_t>(number), status, code};
}

constexpr std::string_view backend = sandbox::backendErrorDomain;
constexpr std::string_view provider = sandbox::providerErrorDomain;

constexpr Known knownErrors[] = {
    known(sandbox::urlErrorDomain, sandbox::URLErrorCode::notConnected, 503, "not-connected"),
    known(backend, BackendErrorCode::invalidRequest, 400, "invalid-request"),
    known(backend, BackendErrorCode::notSignedIn, 401, "not-signed-in"),
    known(backend, BackendErrorCode::foreignGuest, 403, "foreign-guest"),
    known(backend, BackendErrorCode::unknownCard, 404, "unknown-card"),
    known(backend, BackendErrorCode::cardRefused, 422, "card-refused"),
    known(backend, BackendErrorCode::storeFailed, 500, "store-failed"),
    known(provider, ProviderErrorCode::invalidRequest, 400, "invalid-request"),
    known(provider, ProviderErrorCode::notRegistered, 401, "not-registered"),
    known(provider, ProviderErrorCode::cardDeclined, 422, "card-declined"),
    known(provider, ProviderErrorCode::unknownToken, 404, "unknown-token"),
    known(provider, ProviderErrorCode::unknownUseCase, 422, "unknown-use-case"),
    known(provider, ProviderErrorCode::instrumentGone, 404, "instrument-gone"),
    known(provider, ProviderErrorCode::malformedCard, 422, "malformed-card"),
    known(provider, ProviderErrorCode::storeFailed, 500, "store-failed"),
};

Refused refusedBy(const std::string& domain, std::int64_t number) {
  const auto* found = std::find_if(
      std::begin(knownErrors), std::end(knownErrors),
      [&](const Known& error) { return error.domain == domain && error.number == number; });
  if (found == std::end(knownErrors)) return {500, "service-failed", ""};
  return {found->status, found->code, ""};
}

Json bodyOf(const std::string& code, const std::string& domain, std::int64_t number,
            const std::string& message) {
  return {
      {"error", {{"code", code}, {"domain", domain}, {"number", number}, {"message", message}}}};
}

}  // namespace

HttpAnswer errorAnswer(const ErrorPtr& error) {
  const auto refused = refusedBy(error->domain(), error->code());
  return {refused.status, bodyOf(refused.code, error->domain(), error->code(),
                                 error->localizedDescription().value_or(""))};
}

HttpAnswer errorAnswer(const Refused& refused) {
  return {refused.status,
          bodyOf(refused.code, requestErrorDomain, refused.status, refused.sentence)};
}

HttpAnswer errorAnswer(int status) {
  switch (status) {
    case 404:
      return errorAnswer(Refused{404, "no-such-resource", "There is nothing at this path."});
    case 413:
      return errorAnswer(Refused{413, "too-large", "The body is too large."});
    case 414:
      return errorAnswer(Refused{414, "path-too-long", "The path is too long."});
    case 417:
      return errorAnswer(Refused{417, "expectation-failed", "The expectation cannot be met."});
    case 500:
      return errorAnswer(Refused{500, "service-failed", "The service failed."});
    default:
      return errorAnswer(Refused{400, "malformed-request", "The request cannot be read."});
  }
}

ErrorPtr errorIn(const Json& body) {
  const auto error = body.is_object() ? body.find("error") : body.end();
  if (error == body.end() || !error->is_object()) return nullptr;
  const auto domain = error->find("domain");
  const auto number = error->find("number");
  const auto message = error->find("message");
  if (domain == error->end() || !domain->is_string() || number == error->end() ||
      !number->is_number_integer() || message == error->end() || !message->is_string()) {
    return nullptr;
  }
  const auto text = message->get<std::string>();
  return sandbox::SandboxError::make(domain->get<std::string>(), number->get<std::int64_t>(),
                                     text.empty() ? std::nullopt : NullableString(text));
}

}  // namespace hlv::services
