#include <algorithm>
#include <string_view>

#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/Errors/SandboxError.h"
#include "Sandbox/JSON/Json.h"
#include "Sandbox/Store/Store.h"
#include "Server/Api/Exchange.h"
#include "Server/Http/HttpError.h"

namespace hlv::server {
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

constexpr std::string_view backendDomain = sandbox::backendErrorDomain;
constexpr std::string_view providerDomain = sandbox::providerErrorDomain;

constexpr Known knownErrors[] = {
    known(sandbox::urlErrorDomain, sandbox::URLErrorCode::notConnected, 503, "not-connected"),
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
  return errorReply(isKnown ? found->status : 500, isKnown ? found->code : "service-failed", domain,
                    error->code(), error->localizedDescription().value_or(""), requestID);
}

HttpReply errorReply(const std::exception_ptr& problem, const std::string& requestID) {
  try {
    std::rethrow_exception(problem);
  } catch (const HttpError& error) {
    return errorReply(error, requestID);
  } catch (const sandbox::Refusal& refusal) {
    return errorReply(refusal.error, requestID);
  } catch (const sandbox::InvalidRecord& record) {
    const int status = record.code() == "malformed-json" ? 400 : 422;
    return errorReply(HttpError(status, record.code(), record.what()), requestID);
  } catch (const sandbox::NoStore&) {
    const char* sentence = "The snapshot was made by another version.";
    return errorReply(HttpError(409, "snapshot-version", sentence), requestID);
  } catch (const sandbox::StoreFailure& failure) {
    return errorReply(HttpError(507, "store-failed", failure.what()), requestID);
  } catch (const std::exception&) {
    return errorReply(HttpError(500, "service-failed", "The service failed."), requestID);
  }
}

}  // namespace hlv::server
