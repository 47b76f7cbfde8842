#include "Sandbox/Errors/SandboxError.h"

#include "Sandbox/Masking/MaskedText.h"
#include "Values/Names.h"

namespace hlv::sandbox {
namespace {

constexpr Names<TransportErrorCode, 4> sentences{
    {{TransportErrorCode::unreachable, "The service cannot be reached."},
     {TransportErrorCode::timedOut, "The service did not answer in time."},
     {TransportErrorCode::broken, "The connection ended before the service had answered."},
     {TransportErrorCode::unreadable, "What the service answered cannot be read."}}};

NullableString masked(const NullableString& text) {
  return text ? NullableString(maskedText(*text)) : std::nullopt;
}

}  // namespace

std::shared_ptr<const SandboxError> SandboxError::make(std::string domain, std::int64_t code,
                                                       NullableString localizedDescription,
                                                       NullableString developerMessage,
                                                       ErrorPtr underlyingError) {
  if (!developerMessage) {
    developerMessage = domain + " " + std::to_string(code);
    if (localizedDescription) *developerMessage += ": " + *localizedDescription;
  }
  return std::shared_ptr<const SandboxError>(
      new SandboxError(std::move(domain), code, masked(localizedDescription),
                       maskedText(*developerMessage), std::move(underlyingError)));
}

SandboxError::SandboxError(std::string domain, std::int64_t code,
                           NullableString localizedDescription, std::string developerMessage,
                           ErrorPtr underlyingError)
    : domain_(std::move(domain)),
      code_(code),
      localizedDescription_(std::move(localizedDescription)),
      developerMessage_(std::move(developerMessage)),
      underlyingError_(std::move(underlyingError)) {}

ErrorPtr notConnectedError() {
  return SandboxError::make(urlErrorDomain, URLErrorCode::notConnected,
                            "No network connection is available.");
}

ErrorPtr transportError(TransportErrorCode code) {
  return SandboxError::make(transportErrorDomain, code, std::string(sentences.of(code)));
}

Refusal::Refusal(ErrorPtr refusal)
    : Problem(refusal->localizedDescription().value_or("The services refuse it.")),
      error(std::move(refusal)) {}

}  // namespace hlv::sandbox
