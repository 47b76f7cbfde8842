// Errors that say how they were made, and the facade that makes them.
//
// Threading: one thread.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Host/Halvo_Errors/HLVErrorFacade.h"

namespace hlv::testing {

struct FakeError final : Error {
  explicit FakeError(std::string description) : text(std::move(description)) {}
  std::string text;

  hlv::Text domain() const override { return "test"; }
  std::int64_t code() const override { return 7; }
  NullableString localizedDescription() const override { return "localized " + text; }
  NullableString developerMessage() const override { return "developer " + text; }
};

inline ErrorPtr makeError(std::string text) { return std::make_shared<FakeError>(std::move(text)); }

/// How an error was made, or the description of one that crossed another object model, in one line;
/// "none" for no error.
inline std::string madeAs(const ErrorPtr& error) {
  const auto* fake = dynamic_cast<const FakeError*>(error.get());
  if (fake) return fake->text;
  return error ? error->localizedDescription().value_or("") : "none";
}

inline std::string quoted(const NullableString& text) { return text ? "'" + *text + "'" : "nil"; }

/// Writes down each error that it makes.
class FakeErrorFacade final : public HLVErrorFacade {
 public:
  explicit FakeErrorFacade(std::vector<std::string>* trace = nullptr) : trace_(trace) {}

  ErrorPtr errorWithCode(std::int64_t code, const NullableString& domain,
                         const NullableString& message) override {
    return made("code " + std::to_string(code) + " in " + quoted(domain) + ", message " +
                quoted(message));
  }
  ErrorPtr invalidArgumentErrorWithName(const NullableString& name, const NullableString& value,
                                        const NullableString& message) override {
    return made("invalid " + quoted(name) + " value " + quoted(value) + ", message " +
                quoted(message));
  }
  ErrorPtr requiredArgumentErrorWithName(const NullableString& name, const NullableString& message,
                                         const char* functionName, const char* fileName) override {
    return made("required " + quoted(name) + ", message " + quoted(message) + ", by " +
                functionName + " in " + fileName);
  }
  ErrorPtr paymentProviderErrorWithError(const ErrorPtr& error) override {
    return made("provider(" + madeAs(error) + ")");
  }

 private:
  ErrorPtr made(const std::string& text) {
    if (trace_) trace_->push_back("makes " + text);
    return makeError(text);
  }

  std::vector<std::string>* const trace_;
};

}  // namespace hlv::testing
