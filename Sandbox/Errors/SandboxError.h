// Every error that the sandbox makes.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
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
  /// `code` is a number, or one of the enumerations of codes. Without a developer message of its
  /// own the error gets one of domain, code and description.
  template <class Code>
  [[nodiscard]] static std::shared_ptr<const SandboxError> make(
      std::string domain, Code code, const NullableString& localizedDescription,
      const NullableString& developerMessage = std::nullopt) {
    return std::make_shared<const SandboxError>(std::move(domain), static_cast<std::int64_t>(code),
                                                localizedDescription, developerMessage);
  }
  SandboxError(std::string domain, std::int64_t code, const NullableString& localizedDescription,
               const NullableString& developerMessage);

  Text domain() const override { return domain_; }
  std::int64_t code() const override { return code_; }
  NullableString localizedDescription() const override { return localizedDescription_; }
  NullableString developerMessage() const override { return developerMessage_; }

 private:
  const std::string domain_;
  const std::int64_t code_;
  const NullableString localizedDescription_;
  const std::string developerMessage_;
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
