#include "Sandbox/Calls/Summary.h"

#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"

namespace hlv::sandbox {
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
