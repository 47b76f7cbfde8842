// A card as a person typed it, which checks itself.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrument.h"
#include "Values/Mutex.h"

namespace hlv::sandbox {

struct BrokenRule;

/// What a person types. The use case is one of "default", "private" and "business".
struct CardFields {
  std::string pan;
  std::string expiryMonth;
  std::string expiryYear;
  std::string cvv;
  std::string cardHolder;
  std::string useCase = "default";
};

/// Checks its number (digits, length and IIN range of a known brand, Luhn where the brand has it),
/// expiry, security code, holder and use case. Spaces and hyphens in the number are taken out.
/// Number and security code are wiped from memory when the card goes away.
///
/// Threading: any.
class EnteredCard final : public HLVSDKPaymentInstrument {
 public:
  [[nodiscard]] static std::shared_ptr<EnteredCard> make(CardFields fields);
  ~EnteredCard() override;

  NullableString pan() const override;
  NullableString expiryMonth() const override;
  NullableString expiryYear() const override;
  NullableString cvv() const override;
  NullableString cardHolder() const override;
  NullableString instrumentUseCaseString() const override;
  bool isValid(ErrorPtr* error) const override;
  // For the sandbox's own use.

  /// As they are kept; what is returned by value leaves a copy behind.
  const CardFields& fields() const { return fields_; }
  /// The first rule that the card breaks in a month.
  [[nodiscard]] std::optional<BrokenRule> brokenRule(std::chrono::year_month month) const;
  void setExternalIdentifier(const NullableString& identifier) override;
  NullableString externalIdentifier() const;

 private:
  explicit EnteredCard(const CardFields& fields);

  CardFields fields_;
  mutable Mutex mutex_;
  NullableString externalIdentifier_ HLV_GUARDED_BY(mutex_);
};

}  // namespace hlv::sandbox
