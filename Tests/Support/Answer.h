// What a service brings, whichever it is.
//
// Threading: plain values.
#pragma once

#include <functional>
#include <memory>
#include <type_traits>

#include "Tests/Support/FakeRecords.h"

namespace hlv::testing {

/// What a service brings with its answer; an answer that fails brings an error as well.
struct Answer {
  const char* name = "";
  bool fails = false;
  NullableString token = std::nullopt;
  NullableList<PLVCreditCardPaymentInstrument> instruments = std::nullopt;
  NullableList<HLVSDKCreditCard> cards = std::nullopt;
  std::shared_ptr<FakeGuest> guest = nullptr;
  std::shared_ptr<FakeStoredCard> card = nullptr;
};

/// What an answer has for one parameter of a completion.
template <class Result>
Result brought(const Answer& answer, const ErrorPtr& error) {
  if constexpr (std::is_same_v<Result, ErrorPtr>) return error;
  if constexpr (std::is_same_v<Result, NullableString>) return answer.token;
  if constexpr (std::is_same_v<Result, std::shared_ptr<HLVSDKGuest>>) return answer.guest;
  if constexpr (std::is_same_v<Result, std::shared_ptr<HLVSDKCreditCard>>) return answer.card;
  if constexpr (std::is_same_v<Result, decltype(answer.cards)>) return answer.cards;
  if constexpr (std::is_same_v<Result, decltype(answer.instruments)>) return answer.instruments;
}

/// Completes with what the answer has for each parameter, unless the completion is missing.
template <class... Results>
void complete(const std::function<void(Results...)>& completion, const Answer& answer,
              const ErrorPtr& error) {
  if (completion) completion(brought<Results>(answer, error)...);
}

}  // namespace hlv::testing
