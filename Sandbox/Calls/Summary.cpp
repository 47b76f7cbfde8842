#include "Sandbox/Calls/Summary.h"

#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"

namespace hlv::sandbox {
namespace {

template <class Items>
std::string counted(const Items& items, const std::string& noun) {
  if (!items) return "no list";
  return std::to_string(items->size()) + " " + noun + (items->size() == 1 ? "" : "s");
}

}  // namespace

std::string summary(const ErrorPtr& error) {
  return error ? "error " + error->domain() + " " + std::to_string(error->code()) : "";
}

std::string summary(const NullableString& token) {
  constexpr std::size_t shown = 8;
  return token ? "token " + token->substr(0, shown) + "…" : "no token";
}

std::string summary(const std::shared_ptr<HLVSDKGuest>&) { return ""; }

std::string summary(const std::shared_ptr<HLVSDKCreditCard>& card) {
  return card ? "card " + card->halvoID().value_or("without ID") : "no card";
}

std::string summary(const NullableList<HLVSDKCreditCard>& cards) { return counted(cards, "card"); }

std::string summary(const NullableList<PLVCreditCardPaymentInstrument>& instruments) {
  return counted(instruments, "instrument");
}

}  // namespace hlv::sandbox
