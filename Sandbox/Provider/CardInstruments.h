// The provider's instruments as objects: one made from an entered card, one listed. Private to the
// sandbox, server and client.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "Host/PaylevenFramework/PLVPaymentInstrument.h"
#include "Sandbox/Cards/CardBrands.h"
#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Cards/EnteredCard.h"
#include "Sandbox/Records/ProviderInstrument.h"

namespace hlv::sandbox {

/// On its way to the provider. Shows a masked number, as a stored one does.
///
/// Threading: immutable; any.
class NewInstrument final : public PLVCreditCardPaymentInstrument {
 public:
  explicit NewInstrument(std::shared_ptr<EnteredCard> card) : card_(std::move(card)) {}

  NullableString identifier() const override { return std::nullopt; }
  NullableString pan() const override { return maskedPan(card_->fields().pan); }
  NullableString cardBrand() const override {
    const auto* brand = findCardBrand(card_->fields().pan);
    return brand ? NullableString(brand->name) : std::nullopt;
  }
  NullableString expiryMonth() const override { return card_->expiryMonth(); }
  NullableString expiryYear() const override { return card_->expiryYear(); }
  std::uint64_t state() const override { return 0; }

  const EnteredCard& card() const { return *card_; }

 private:
  const std::shared_ptr<EnteredCard> card_;
};

/// As the provider had it when it was listed.
///
/// Threading: immutable; any.
class ListedInstrument final : public PLVCreditCardPaymentInstrument {
 public:
  /// `row` distinguishes instruments that have no identifier.
  ListedInstrument(std::int64_t row, ProviderInstrument values)
      : row_(row), values_(std::move(values)) {}

  NullableString identifier() const override { return values_.identifier; }
  NullableString pan() const override { return values_.maskedPan; }
  NullableString cardBrand() const override { return values_.brand; }
  NullableString expiryMonth() const override { return values_.expiryMonth; }
  NullableString expiryYear() const override { return values_.expiryYear; }
  std::uint64_t state() const override { return values_.state; }

  std::int64_t row() const { return row_; }

 private:
  const std::int64_t row_;
  const ProviderInstrument values_;
};

}  // namespace hlv::sandbox
