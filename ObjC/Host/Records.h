// The host's and the provider's records, as the core reads them: live, from the app's own objects.
//
// Threading: as the objects.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

#include <cstdint>

#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentBillingAddress.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrument.h"
#include "Host/HLVSDKCoreKit/HLVSDKUpdateGuestRequestInfo.h"
#include "Host/PaylevenFramework/PLVPaymentInstrument.h"
#include "ObjC/Binding/Crossing.h"

namespace hlv::objc {

/// The getter of a text.
#define HLV_TEXT(getter) \
  NullableString getter() const override { return fromNSString([object() getter]); }

/// A card as the backend keeps it.
class StoredCard final : public Adapter<HLVSDKCreditCard, ::HLVSDKCreditCard*> {
 public:
  using Adapter::Adapter;
  HLV_TEXT(halvoID)
  HLV_TEXT(lastFourDigits)
  HLV_TEXT(brand)
  HLV_TEXT(useCase)
  HLV_TEXT(externalIdentifier)
};
template <>
struct AdapterOf<HLVSDKCreditCard> : As<StoredCard> {};

class Guest final : public Adapter<HLVSDKGuest, ::HLVSDKGuest*> {
 public:
  using Adapter::Adapter;
  HLV_TEXT(email)
  HLV_TEXT(paylevenToken)
  NullableList<HLVSDKCreditCard> creditCards() const override {
    return asCore([object() creditCards], As<NullableList<HLVSDKCreditCard>>());
  }
};
template <>
struct AdapterOf<HLVSDKGuest> : As<Guest> {};

/// A card as the user typed it.
class EnteredCard final : public Adapter<HLVSDKPaymentInstrument, ::HLVSDKPaymentInstrument*> {
 public:
  using Adapter::Adapter;
  HLV_TEXT(pan)
  HLV_TEXT(expiryMonth)
  HLV_TEXT(expiryYear)
  HLV_TEXT(cvv)
  HLV_TEXT(cardHolder)
  HLV_TEXT(instrumentUseCaseString)
  bool isValid(ErrorPtr* error) const override {
    NSError* reason = nil;
    const bool valid = [object() isValid:&reason];
    if (error && reason) *error = fromNSError(reason);
    return valid;
  }
  void setExternalIdentifier(const NullableString& identifier) override {
    [object() setExternalIdentifier:toNSString(identifier)];
  }
};

class BillingAddress final
    : public Adapter<HLVSDKPaymentBillingAddress, ::HLVSDKPaymentBillingAddress*> {
 public:
  using Adapter::Adapter;
  HLV_TEXT(countryCode)
  HLV_TEXT(street)
  HLV_TEXT(city)
  HLV_TEXT(zip)
  HLV_TEXT(businessName)
};

class UpdateGuestRequest final
    : public Adapter<HLVSDKUpdateGuestRequestInfo, ::HLVSDKUpdateGuestRequestInfo*> {
 public:
  using Adapter::Adapter;
  void setPaymentToken(const NullableString& token) override {
    [object() setPaymentToken:toNSString(token)];
  }
};

/// An instrument of the provider.
class Instrument final
    : public Adapter<PLVCreditCardPaymentInstrument, ::PLVCreditCardPaymentInstrument*> {
 public:
  using Adapter::Adapter;
  HLV_TEXT(identifier)
  HLV_TEXT(pan)
  HLV_TEXT(cardBrand)
  HLV_TEXT(expiryMonth)
  HLV_TEXT(expiryYear)
  std::uint64_t state() const override { return [object() state]; }
};
template <>
struct AdapterOf<PLVCreditCardPaymentInstrument> : As<Instrument> {};

#undef HLV_TEXT

}  // namespace hlv::objc
