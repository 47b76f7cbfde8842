// Tells which provider instruments the backend's cards stand for.
//
// Threading: built and asked on one thread at a time.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/PaylevenFramework/PLVPaymentInstrument.h"
#include "Platform/List.h"
#include "Platform/NullableString.h"

namespace hlv {

/// Reads each card once, so that many instruments can be looked up in many cards. A card with an
/// external identifier stands for the instrument of that identifier alone; one without stands for
/// every instrument of its brand and use case whose number ends with its last digits.
class CardIndex {
 public:
  /// Cards may be null; a missing list has none.
  explicit CardIndex(const NullableList<HLVSDKCreditCard>& cards);

  /// Whether a card stands for the instrument as it is listed under `useCase`. Both may be missing.
  bool hasCardFor(const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                  const NullableString& useCase) const;

 private:
  void add(const std::shared_ptr<HLVSDKCreditCard>& card);

  std::unordered_set<std::string> externalIdentifiers_;
  /// Under brand and use case. Looked up in place: no number is copied for it.
  std::map<std::pair<std::string, std::string>, std::set<std::string, std::less<>>> lastDigits_;
  /// How many last digits the cards know; nearly always four.
  std::set<std::size_t> digitCounts_;
};

}  // namespace hlv
