// Picks the provider instrument that stands for a card.
//
// Threading: pure and re-entrant; any thread, on the caller's thread.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrument.h"
#include "Host/PaylevenFramework/PLVPaymentInstrument.h"
#include "Platform/Export.h"
#include "Platform/List.h"
#include "Platform/NullableString.h"

namespace hlv {

/// The provider does not keep the host's card identifiers, so a match is made on what both sides
/// know of a card. Only instruments in state 0 match; where several do, the last of the list wins.
/// A missing argument goes to the assertion handler by its name and finds nothing.
class HLV_EXPORT HLVSDKPaylevenPaymentInstrumentFinder {
 public:
  HLVSDKPaylevenPaymentInstrumentFinder() = delete;

  /// `+findPaylevenPaymentInstrumentIn:matchesLastFourDigits:andBrand:`. All three are required.
  /// Returns an object of the list, or null.
  [[nodiscard]] static std::shared_ptr<PLVCreditCardPaymentInstrument>
  findPaylevenPaymentInstrumentIn(
      const NullableList<PLVCreditCardPaymentInstrument>& paylevenInstruments,
      const NullableString& lastFourDigits, const NullableString& brand);

  /// `+findPaylevenPaymentInstrumentIn:matchesHalvoPaymentInstrument:`. Both are required. Matches
  /// the number's last four digits, its brand, and the expiry as it is spelled. Returns an object
  /// of the list, or null.
  [[nodiscard]] static std::shared_ptr<PLVCreditCardPaymentInstrument>
  findPaylevenPaymentInstrumentIn(
      const NullableList<PLVCreditCardPaymentInstrument>& paylevenInstruments,
      const std::shared_ptr<HLVSDKPaymentInstrument>& halvoInstrument);
};

}  // namespace hlv
