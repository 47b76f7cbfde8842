// Every error that the sandbox makes.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "Sandbox/Errors/ErrorCodes.h"
#include "Values/Error.h"
#include "Values/Problem.h"

namespace hlv::sandbox {

/// Masks card numbers in its texts.
///
/// Threading: immutable; any.
class SandboxError final : public Error {
 public:
  /// Without a developer message of its own the error gets one of domain, code and description.
  [[nodiscard]] static std::shared_ptr<const SandboxError> make(
      std::string domain, std::int64_t code, NullableString localizedDescription,
      NullableString developerMessage = std::nullopt, ErrorPtr underlyingError = nullptr);

  template <class Code>
  [[nodiscard]] static std::shared_ptr<const SandboxError> make(
      std::string domain, Code code, NullableString localizedDescription,
      NullableString developerMessage = std::nullopt,
      ErrorPtr underlyingError = nullptr) requires std::is_enum_v<Code> {
    return make(std::move(domain), static_cast<std::int64_t>(code), std::move(localizedDescription),
                std::move(developerMessage), std::move(underlyingError));
  }

  Text domain() const override { return domain_; }
  std::int64_t code() const override { return code_; }
  NullableString localizedDescription() const override { return localizedDescription_; }
  NullableString developerMessage() const override { return developerMessage_; }
  /// The provider's own error in an error that wraps one; else null.
  ErrorPtr underlyingError() const { return underlyingError_; }

 private:
  SandboxError(std::string domain, std::int64_t code, NullableString localizedDescription,
               std::string developerMessage, ErrorPtr underlyingError);

  const std::string domain_;
  const std::int64_t code_;
  const NullableString localizedDescription_;
  const std::string developerMessage_;
  const ErrorPtr underlyingError_;
};

/// What both services reply while the network is off.
ErrorPtr notConnectedError();
ErrorPtr transportError(TransportErrorCode code);

/// How a service's code ends a call that it refuses.
class Refusal : public Problem {
 public:
  explicit Refusal(ErrorPtr refusal);
  ErrorPtr error;
};

}  // namespace hlv::sandbox
