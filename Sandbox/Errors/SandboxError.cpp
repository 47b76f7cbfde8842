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

SandboxError::SandboxError(std::string domain, std::int64_t code,
                           const NullableString& localizedDescription,
                           const NullableString& developerMessage)
    : domain_(std::move(domain)),
      code_(code),
      localizedDescription_(masked(localizedDescription)),
      developerMessage_(maskedText(
          developerMessage.value_or(domain_ + " " + std::to_string(code) +
                                    (localizedDescription ? ": " + *localizedDescription : "")))) {}

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
