// Host and provider records with fields that a test sets.
//
// Threading: one thread.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentBillingAddress.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrument.h"
#include "Host/HLVSDKCoreKit/HLVSDKUpdateGuestRequestInfo.h"
#include "Host/PaylevenFramework/PLVPaymentInstrument.h"

namespace hlv::testing {

struct FakeGuest final : HLVSDKGuest {
  NullableString emailText = "guest@example.com";
  NullableString token;
  NullableList<HLVSDKCreditCard> cards;

  NullableString email() const override { return emailText; }
  NullableString paylevenToken() const override { return token; }
  NullableList<HLVSDKCreditCard> creditCards() const override { return cards; }
};

struct FakeEnteredCard : HLVSDKPaymentInstrument {
  NullableString number = "4111111111111111";
  NullableString month = "09";
  NullableString year = "2031";
  NullableString useCase = "default";
  NullableString identifier;
  bool valid = true;
  ErrorPtr ownError;

  NullableString pan() const override { return number; }
  NullableString expiryMonth() const override { return month; }
  NullableString expiryYear() const override { return year; }
  NullableString cvv() const override { return "737"; }
  NullableString cardHolder() const override { return "A. Guest"; }
  NullableString instrumentUseCaseString() const override { return useCase; }
  bool isValid(ErrorPtr* error) const override {
    if (!valid) *error = ownError;
    return valid;
  }
  void setExternalIdentifier(const NullableString& external) override { identifier = external; }
};

struct FakeStoredCard final : HLVSDKCreditCard {
  NullableString id = "card-1";
  NullableString digits = "1111";
  NullableString brandName = "visa";
  NullableString useCaseName = "default";
  NullableString external;

  NullableString halvoID() const override { return id; }
  NullableString lastFourDigits() const override { return digits; }
  NullableString brand() const override { return brandName; }
  NullableString useCase() const override { return useCaseName; }
  NullableString externalIdentifier() const override { return external; }
};

struct FakeAddress final : HLVSDKPaymentBillingAddress {
  NullableString country = "DE", streetName = "Street 1", cityName = "Berlin", zipCode = "10115";
  NullableString business = "Halvo GmbH";

  NullableString countryCode() const override { return country; }
  NullableString street() const override { return streetName; }
  NullableString city() const override { return cityName; }
  NullableString zip() const override { return zipCode; }
  NullableString businessName() const override { return business; }
};

struct FakeInstrument : PLVCreditCardPaymentInstrument {
  NullableString id = "plv-1";
  NullableString number = "************1111";
  NullableString brand = "visa";
  NullableString month = "09";
  NullableString year = "2031";
  std::uint64_t stateNumber = 0;

  NullableString identifier() const override { return id; }
  NullableString pan() const override { return number; }
  NullableString cardBrand() const override { return brand; }
  NullableString expiryMonth() const override { return month; }
  NullableString expiryYear() const override { return year; }
  std::uint64_t state() const override { return stateNumber; }
};

struct FakeUpdateRequest final : HLVSDKUpdateGuestRequestInfo {
  NullableString token;
  void setPaymentToken(const NullableString& newToken) override { token = newToken; }
};

// The rules of matching, for the tests' references.

inline bool same(const NullableString& one, const NullableString& other) {
  return one && other && *one == *other;
}
inline bool endsWith(const NullableString& text, const NullableString& end) {
  return text && end && text->size() >= end->size() &&
         text->substr(text->size() - end->size()) == *end;
}
/// Whether the card stands for the instrument: by the identifier that it carries, or, where it
/// carries none, by digits, brand and use case.
inline bool standsFor(const FakeStoredCard& card, const FakeInstrument& instrument,
                      const NullableString& useCase) {
  if (card.external) return same(card.external, instrument.id);
  return endsWith(instrument.number, card.digits) && same(instrument.brand, card.brandName) &&
         same(useCase, card.useCaseName);
}

/// One of each that an app or a service has.
struct FakeObjects {
  const std::shared_ptr<FakeGuest> guest = std::make_shared<FakeGuest>();
  const std::shared_ptr<FakeEnteredCard> card = std::make_shared<FakeEnteredCard>();
  const std::shared_ptr<FakeStoredCard> storedCard = std::make_shared<FakeStoredCard>();
  const std::shared_ptr<FakeAddress> address = std::make_shared<FakeAddress>();
  const std::shared_ptr<FakeInstrument> instrument = std::make_shared<FakeInstrument>();
};

}  // namespace hlv::testing
