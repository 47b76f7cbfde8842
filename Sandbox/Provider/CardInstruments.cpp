#include "Sandbox/Provider/CardInstruments.h"

#include "Sandbox/Cards/CardBrands.h"
#include "Sandbox/Cards/CardRules.h"

namespace hlv::sandbox {

NullableString NewInstrument::pan() const { return maskedPan(card_->pan().value_or("")); }

NullableString NewInstrument::cardBrand() const {
  const auto* brand = findCardBrand(card_->pan().value_or(""));
  return brand ? NullableString(brand->name) : std::nullopt;
}

}  // namespace hlv::sandbox
