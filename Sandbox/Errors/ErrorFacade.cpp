#include "Sandbox/Errors/ErrorFacade.h"

#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/Errors/SandboxError.h"

namespace hlv::sandbox {
namespace {

std::string nameOf(const NullableString& name) { return name.value_or("(unnamed)"); }

std::string sentenceOf(const NullableString& message) { return message ? " " + *message : ""; }

const char* stateOf(const NullableString& value) {
  if (!value) return " is missing.";
  return value->empty() ? " is empty." : " has a value that cannot be used.";
}

}  // namespace

ErrorPtr ErrorFacade::errorWithCode(std::int64_t code, const NullableString& domain,
                                    const NullableString& message) {
  const bool isOffline =
      domain == urlErrorDomain && code == static_cast<std::int64_t>(URLErrorCode::notConnected);
  if (isOffline && !message) return notConnectedError();
  return SandboxError::make(domain.value_or("(no domain)"), code, message);
}

ErrorPtr ErrorFacade::invalidArgumentErrorWithName(const NullableString& name,
                                                   const NullableString& value,
                                                   const NullableString& message) {
  const auto text = nameOf(name) + stateOf(value) + sentenceOf(message);
  return SandboxError::make(argumentErrorDomain, ArgumentErrorCode::invalid, text,
                            "Invalid argument: " + text);
}

ErrorPtr ErrorFacade::requiredArgumentErrorWithName(const NullableString& name,
                                                    const NullableString& message,
                                                    const char* functionName,
                                                    const char* fileName) {
  const auto text = nameOf(name) + " is missing." + sentenceOf(message);
  const std::string function = functionName ? functionName : "unknown function";
  const std::string file = fileName ? fileName : "unknown file";
  return SandboxError::make(argumentErrorDomain, ArgumentErrorCode::required, text,
                            "Required argument: " + text + " (" + function + ", " + file + ")");
}

ErrorPtr ErrorFacade::paymentProviderErrorWithError(const ErrorPtr& error) {
  if (!error) {
    return SandboxError::make(paymentErrorDomain, CardErrorCode::providerFailed, std::nullopt,
                              "The payment provider failed without an error.");
  }
  const auto reason =
      error->developerMessage().value_or(error->domain() + " " + std::to_string(error->code()) +
                                         sentenceOf(error->localizedDescription()));
  return SandboxError::make(paymentErrorDomain, CardErrorCode::providerFailed,
                            error->localizedDescription(),
                            "The payment provider answered: " + reason);
}

}  // namespace hlv::sandbox
