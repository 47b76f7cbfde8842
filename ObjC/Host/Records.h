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
#include "ObjC/Binding/Held.h"

namespace hlv::objc {

class Guest final : public Adapter<HLVSDKGuest, ::HLVSDKGuest*> {
 public:
  using Adapter::Adapter;
  NullableString email() const override;
  NullableString paylevenToken() const override;
  NullableList<HLVSDKCreditCard> creditCards() const override;
};

/// A card as the user typed it.
class EnteredCard final : public Adapter<HLVSDKPaymentInstrument, ::HLVSDKPaymentInstrument*> {
 public:
  using Adapter::Adapter;
  NullableString pan() const override;
  NullableString expiryMonth() const override;
  NullableString expiryYear() const override;
  NullableString cvv() const override;
  NullableString cardHolder() const override;
  NullableString instrumentUseCaseString() const override;
  bool isValid(ErrorPtr* error) const override;
  void setExternalIdentifier(const NullableString& identifier) override;
};

/// A card as the backend keeps it.
class StoredCard final : public Adapter<HLVSDKCreditCard, ::HLVSDKCreditCard*> {
 public:
  using Adapter::Adapter;
  NullableString halvoID() const override;
  NullableString lastFourDigits() const override;
  NullableString brand() const override;
  NullableString useCase() const override;
  NullableString externalIdentifier() const override;
};

class BillingAddress final
    : public Adapter<HLVSDKPaymentBillingAddress, ::HLVSDKPaymentBillingAddress*> {
 public:
  using Adapter::Adapter;
  NullableString countryCode() const override;
  NullableString street() const override;
  NullableString city() const override;
  NullableString zip() const override;
  NullableString businessName() const override;
};

class UpdateGuestRequest final
    : public Adapter<HLVSDKUpdateGuestRequestInfo, ::HLVSDKUpdateGuestRequestInfo*> {
 public:
  using Adapter::Adapter;
  void setPaymentToken(const NullableString& token) override;
};

/// An instrument of the provider.
class Instrument final
    : public Adapter<PLVCreditCardPaymentInstrument, ::PLVCreditCardPaymentInstrument*> {
 public:
  using Adapter::Adapter;
  NullableString identifier() const override;
  NullableString pan() const override;
  NullableString cardBrand() const override;
  NullableString expiryMonth() const override;
  NullableString expiryYear() const override;
  std::uint64_t state() const override;
};

}  // namespace hlv::objc
