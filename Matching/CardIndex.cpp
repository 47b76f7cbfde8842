#include "Matching/CardIndex.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "Platform/Secret.h"
#include "Platform/Send.h"

namespace hlv {

using Card = HLVSDKCreditCard;
using Instrument = PLVCreditCardPaymentInstrument;

CardIndex::CardIndex(const NullableList<Card>& cards) {
  if (!cards) return;
  for (const auto& card : *cards) add(card);
}

void CardIndex::add(const std::shared_ptr<Card>& card) {
  if (auto identifier = send(card, &Card::externalIdentifier)) {
    externalIdentifiers_.insert(std::move(*identifier));
    return;
  }
  auto brand = send(card, &Card::brand);
  auto useCase = send(card, &Card::useCase);
  auto lastDigits = send(card, &Card::lastFourDigits);
  // What is missing equals nothing.
  if (!brand || !useCase || !lastDigits) return;
  digitCounts_.insert(lastDigits->size());
  lastDigits_[{std::move(*brand), std::move(*useCase)}].insert(std::move(*lastDigits));
}

bool CardIndex::hasCardFor(const std::shared_ptr<Instrument>& instrument,
                           const NullableString& useCase) const {
  const auto identifier = send(instrument, &Instrument::identifier);
  if (identifier && externalIdentifiers_.contains(*identifier)) return true;

  const auto brand = send(instrument, &Instrument::cardBrand);
  const Secret number(instrument, &Instrument::pan);
  if (!brand || !useCase || !number.text()) return false;
  const auto alike = lastDigits_.find({*brand, *useCase});
  if (alike == lastDigits_.end()) return false;
  const std::string_view digits = *number.text();
  return std::any_of(digitCounts_.begin(), digitCounts_.end(), [&](std::size_t count) {
    return count <= digits.size() && alike->second.contains(digits.substr(digits.size() - count));
  });
}

}  // namespace hlv
