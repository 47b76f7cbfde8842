#include "ObjC/Host/Records.h"

#include "ObjC/Binding/Crossing.h"

namespace hlv::objc {

NullableString Guest::email() const { return fromNSString([object() email]); }
NullableString Guest::paylevenToken() const { return fromNSString([object() paylevenToken]); }
NullableList<HLVSDKCreditCard> Guest::creditCards() const {
  return adaptedList<StoredCard, HLVSDKCreditCard>([object() creditCards]);
}

NullableString EnteredCard::pan() const { return fromNSString([object() pan]); }
NullableString EnteredCard::expiryMonth() const { return fromNSString([object() expiryMonth]); }
NullableString EnteredCard::expiryYear() const { return fromNSString([object() expiryYear]); }
NullableString EnteredCard::cvv() const { return fromNSString([object() cvv]); }
NullableString EnteredCard::cardHolder() const { return fromNSString([object() cardHolder]); }
NullableString EnteredCard::instrumentUseCaseString() const {
  return fromNSString([object() instrumentUseCaseString]);
}
bool EnteredCard::isValid(ErrorPtr* error) const {
  NSError* reason = nil;
  const bool valid = [object() isValid:&reason];
  if (error && reason) *error = fromNSError(reason);
  return valid;
}
void EnteredCard::setExternalIdentifier(const NullableString& identifier) {
  [object() setExternalIdentifier:toNSString(identifier)];
}

NullableString StoredCard::halvoID() const { return fromNSString([object() halvoID]); }
NullableString StoredCard::lastFourDigits() const {
  return fromNSString([object() lastFourDigits]);
}
NullableString StoredCard::brand() const { return fromNSString([object() brand]); }
NullableString StoredCard::useCase() const { return fromNSString([object() useCase]); }
NullableString StoredCard::externalIdentifier() const {
  return fromNSString([object() externalIdentifier]);
}

NullableString BillingAddress::countryCode() const { return fromNSString([object() countryCode]); }
NullableString BillingAddress::street() const { return fromNSString([object() street]); }
NullableString BillingAddress::city() const { return fromNSString([object() city]); }
NullableString BillingAddress::zip() const { return fromNSString([object() zip]); }
NullableString BillingAddress::businessName() const {
  return fromNSString([object() businessName]);
}

void UpdateGuestRequest::setPaymentToken(const NullableString& token) {
  [object() setPaymentToken:toNSString(token)];
}

NullableString Instrument::identifier() const { return fromNSString([object() identifier]); }
NullableString Instrument::pan() const { return fromNSString([object() pan]); }
NullableString Instrument::cardBrand() const { return fromNSString([object() cardBrand]); }
NullableString Instrument::expiryMonth() const { return fromNSString([object() expiryMonth]); }
NullableString Instrument::expiryYear() const { return fromNSString([object() expiryYear]); }
std::uint64_t Instrument::state() const { return [object() state]; }

}  // namespace hlv::objc
