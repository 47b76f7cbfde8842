#include <algorithm>
#include <string_view>

#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/Errors/SandboxError.h"
#include "Sandbox/JSON/Json.h"
#include "Sandbox/Store/Store.h"
#include "Server/Api/Exchange.h"
#include "Server/Http/HttpError.h"

namespace hlv::sandbox::server {
namespace {

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

constexpr std::string_view backendDomain = backendErrorDomain;
constexpr std::string_view providerDomain = providerErrorDomain;

constexpr Known knownErrors[] = {
    known(urlErrorDomain, URLErrorCode::notConnected, 503, "not-connected"),
    known(backendDomain, BackendErrorCode::invalidRequest, 400, "invalid-request"),
    known(backendDomain, BackendErrorCode::notSignedIn, 401, "not-signed-in"),
    known(backendDomain, BackendErrorCode::foreignGuest, 403, "foreign-guest"),
    known(backendDomain, BackendErrorCode::unknownCard, 404, "unknown-card"),
    known(backendDomain, BackendErrorCode::unknownGuest, 404, "unknown-guest"),
    known(backendDomain, BackendErrorCode::cardRefused, 422, "card-refused"),
    known(backendDomain, BackendErrorCode::storeFailed, 507, "store-failed"),
    known(providerDomain, ProviderErrorCode::invalidRequest, 400, "invalid-request"),
    known(providerDomain, ProviderErrorCode::notRegistered, 401, "not-registered"),
    known(providerDomain, ProviderErrorCode::cardDeclined, 422, "card-declined"),
    known(providerDomain, ProviderErrorCode::unknownToken, 404, "unknown-token"),
    known(providerDomain, ProviderErrorCode::unknownUseCase, 422, "unknown-use-case"),
    known(providerDomain, ProviderErrorCode::instrumentGone, 404, "instrument-gone"),
    known(providerDomain, ProviderErrorCode::malformedCard, 422, "malformed-card"),
    known(providerDomain, ProviderErrorCode::storeFailed, 507, "store-failed"),
};

}  // namespace

HttpReply errorReply(const ErrorPtr& error, const std::string& requestID) {
  const auto domain = error->domain();
  const auto* found = std::find_if(
      std::begin(knownErrors), std::end(knownErrors),
      [&](const Known& each) { return each.domain == domain && each.number == error->code(); });
  const bool isKnown = found != std::end(knownErrors);
  return errorReply(
      HttpError(isKnown ? found->status : 500, isKnown ? found->code : "service-failed",
                error->localizedDescription().value_or(""), domain, error->code()),
      requestID);
}

HttpReply failureReply(const std::shared_ptr<OpenSandbox>& sandbox, const std::string& requestID) {
  const auto reply = [&](int status, const std::string& code, const std::string& sentence) {
    return errorReply(HttpError(status, code, sentence), requestID);
  };
  if (sandbox && sandbox->isRemoved()) return errorReply(noSuchSandbox(), requestID);
  try {
    throw;
  } catch (const HttpError& error) {
    return errorReply(error, requestID);
  } catch (const Refusal& refusal) {
    return errorReply(refusal.error, requestID);
  } catch (const InvalidRecord& record) {
    return reply(record.code() == "malformed-json" ? 400 : 422, record.code(), record.what());
  } catch (const NoStore&) {
    return reply(409, "snapshot-version", "The snapshot was made by another version.");
  } catch (const StoreFailure& failure) {
    return reply(507, "store-failed", failure.what());
  } catch (const std::exception&) {
    return reply(500, "service-failed", "The service failed.");
  }
}

}  // namespace hlv::sandbox::server
