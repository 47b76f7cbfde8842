// How a reply reads in the journal. Private to the sandbox, server and client.
//
// Threading: any.
#pragma once

#include <memory>
#include <string>
#include <tuple>

#include "Host/HLVSDKCoreKit/HLVSDKCompletions.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"

namespace hlv::sandbox {

/// "2 cards", "1 card" or "no list".
template <class Items>
std::string counted(const Items& items, const std::string& noun) {
  if (!items) return "no list";
  return std::to_string(items->size()) + " " + noun + (items->size() == 1 ? "" : "s");
}

std::string summary(const ErrorPtr& error);
std::string summary(const NullableString& token);
/// A guest says nothing new.
std::string summary(const std::shared_ptr<HLVSDKGuest>& guest);
std::string summary(const std::shared_ptr<HLVSDKCreditCard>& card);
std::string summary(const NullableList<HLVSDKCreditCard>& cards);
std::string summary(const NullableList<PLVCreditCardPaymentInstrument>& instruments);

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
