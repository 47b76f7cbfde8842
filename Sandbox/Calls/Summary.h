// How a reply reads in the journal. Private to the sandbox, server and client.
//
// Threading: any.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <tuple>
#include <variant>

#include "Host/HLVSDKCoreKit/HLVSDKCompletions.h"
#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"

namespace hlv::sandbox {

/// "2 cards", "1 card" or "no list".
template <class Items>
std::string counted(const Items& items, const std::string& noun) {
  if (!items) return "no list";
  return std::to_string(items->size()) + " " + noun + (items->size() == 1 ? "" : "s");
}

inline std::string summary(const ErrorPtr& error) {
  return error ? "error " + error->domain() + " " + std::to_string(error->code()) : "";
}

inline std::string summary(const NullableString& token) {
  constexpr std::size_t shown = 8;
  return token ? "token " + token->substr(0, shown) + "…" : "no token";
}

/// A guest says nothing new.
inline std::string summary(const std::shared_ptr<HLVSDKGuest>&) { return ""; }

inline std::string summary(const std::shared_ptr<HLVSDKCreditCard>& card) {
  return card ? "card " + card->halvoID().value_or("without ID") : "no card";
}

inline std::string summary(const NullableList<HLVSDKCreditCard>& cards) {
  return counted(cards, "card");
}

inline std::string summary(const NullableList<PLVCreditCardPaymentInstrument>& instruments) {
  return counted(instruments, "instrument");
}

/// The error, or what came instead of one, e.g. "card crd_k…" or "2 instruments".
template <class... Results>
std::string summaryOf(const std::tuple<Results...>& results) {
  const auto& error = std::get<sizeof...(Results) - 1>(results);
  if (error) return summary(error);
  const auto text = std::apply(
      [](const auto&... result) { return (std::string() + ... + summary(result)); }, results);
  return text.empty() ? "done" : text;
}

}  // namespace hlv::sandbox
