#include "ObjC/HostClasses/Records.h"

#include "ObjC/Binding/Strings.h"
#include "ObjC/Binding/Values.h"
#include "Values/Secret.h"
#include "Values/Send.h"
#include "Values/Wiped.h"

using hlv::send;
using hlv::host_classes::asObject;
using hlv::host_classes::behind;
using hlv::host_classes::newObject;
using hlv::host_classes::playedHost;
using hlv::objc::fromNSString;
using hlv::objc::toNSError;
using hlv::objc::toNSString;

namespace {

/// A text of the record behind `object`. Leaves no other copy of the characters behind, since it
/// may be card data.
template <class Record>
NSString* text(id object, hlv::NullableString (Record::*field)() const) {
  const hlv::Secret characters(behind<Record>(object), field);
  return toNSString(characters.text());
}

/// What a person typed, on its way into the core; wiped when it was used, since it may be a card
/// number or a security code.
struct TypedText {
  explicit TypedText(NSString* typed) : text(fromNSString(typed)) {}
  ~TypedText() {
    if (text) hlv::wipe(*text);
  }
  hlv::NullableString text;
};

}  // namespace

/// The getter of a text.
#define HLV_TEXT(Record, field)             \
  -(NSString*)field {                       \
    return text(self, &hlv::Record::field); \
  }

/// The private subclass of a record's class, and what makes its objects.
#define HLV_RECORD(Record, Subclass)                                                   \
  @interface Subclass : Record <HLVCoreObject> {                                       \
   @private                                                                            \
    std::shared_ptr<hlv::Object>* _object;                                             \
  }                                                                                    \
  @end                                                                                 \
  @implementation Subclass                                                             \
  -(instancetype)initWithCoreObject : (std::shared_ptr<hlv::Object>)object {           \
    if ((self = [super init])) _object = new std::shared_ptr<hlv::Object>(object);     \
    return self;                                                                       \
  }                                                                                    \
  -(void)dealloc {                                                                     \
    delete _object;                                                                    \
    [super dealloc];                                                                   \
  }                                                                                    \
  -(std::shared_ptr<hlv::Object>)coreObject {                                          \
    return *_object;                                                                   \
  }                                                                                    \
  @end                                                                                 \
  ::Record* hlv::host_classes::newObject(const std::shared_ptr<hlv::Record>& record) { \
    return record ? [[Subclass alloc] initWithCoreObject:record] : nil;                \
  }

HLV_RECORD(HLVSDKGuest, HLVCoreGuest)
HLV_RECORD(HLVSDKPaymentInstrument, HLVCorePaymentInstrument)
HLV_RECORD(HLVSDKCreditCard, HLVCoreCreditCard)
HLV_RECORD(HLVSDKPaymentBillingAddress, HLVCorePaymentBillingAddress)
HLV_RECORD(HLVSDKUpdateGuestRequestInfo, HLVCoreUpdateGuestRequestInfo)
HLV_RECORD(HLVSession, HLVCoreSession)
HLV_RECORD(PLVCreditCardPaymentInstrument, HLVCoreCreditCardPaymentInstrument)

@implementation HLVSDKGuest

HLV_TEXT(HLVSDKGuest, email)
HLV_TEXT(HLVSDKGuest, paylevenToken)

+ (HLVSDKGuest*)currentGuest {
  return asObject(send(playedHost(), &hlv::Host::currentGuest));
}

- (NSArray<HLVSDKCreditCard*>*)creditCards {
  return asObject(send(behind<hlv::HLVSDKGuest>(self), &hlv::HLVSDKGuest::creditCards));
}

@end

@implementation HLVSDKPaymentInstrument

HLV_TEXT(HLVSDKPaymentInstrument, pan)
HLV_TEXT(HLVSDKPaymentInstrument, expiryMonth)
HLV_TEXT(HLVSDKPaymentInstrument, expiryYear)
HLV_TEXT(HLVSDKPaymentInstrument, cvv)
HLV_TEXT(HLVSDKPaymentInstrument, cardHolder)
HLV_TEXT(HLVSDKPaymentInstrument, instrumentUseCaseString)

- (BOOL)isValid:(NSError**)error {
  hlv::ErrorPtr problem;
  const bool valid = send(behind<hlv::HLVSDKPaymentInstrument>(self),
                          &hlv::HLVSDKPaymentInstrument::isValid, &problem);
  if (error && !valid) *error = toNSError(problem);
  return valid;
}

- (void)setExternalIdentifier:(NSString*)externalIdentifier {
  if (const auto card = behind<hlv::HLVSDKPaymentInstrument>(self)) {
    card->setExternalIdentifier(fromNSString(externalIdentifier));
  }
}

@end

@implementation HLVSDKCreditCard

HLV_TEXT(HLVSDKCreditCard, halvoID)
HLV_TEXT(HLVSDKCreditCard, lastFourDigits)
HLV_TEXT(HLVSDKCreditCard, brand)
HLV_TEXT(HLVSDKCreditCard, useCase)
HLV_TEXT(HLVSDKCreditCard, externalIdentifier)

+ (NSString*)cardBrandFromNumber:(NSString*)number {
  const TypedText digits(number);
  return toNSString(send(playedHost(), &hlv::Host::cardBrandFromNumber, digits.text));
}

@end

@implementation HLVSDKPaymentBillingAddress

HLV_TEXT(HLVSDKPaymentBillingAddress, countryCode)
HLV_TEXT(HLVSDKPaymentBillingAddress, street)
HLV_TEXT(HLVSDKPaymentBillingAddress, city)
HLV_TEXT(HLVSDKPaymentBillingAddress, zip)
HLV_TEXT(HLVSDKPaymentBillingAddress, businessName)

@end

@implementation HLVSDKUpdateGuestRequestInfo

/// Nil while no host plays.
+ (instancetype)new {
  return newObject(send(playedHost(), &hlv::Host::makeUpdateGuestRequestInfo));
}

- (void)setPaymentToken:(NSString*)token {
  if (const auto request = behind<hlv::HLVSDKUpdateGuestRequestInfo>(self)) {
    request->setPaymentToken(fromNSString(token));
  }
}

@end

@implementation HLVSession

+ (HLVSession*)activeSession {
  return asObject(send(playedHost(), &hlv::Host::activeSession));
}

- (BOOL)isAuthorized {
  return send(behind<hlv::HLVSession>(self), &hlv::HLVSession::isAuthorized);
}

@end

@implementation PLVPaymentInstrument

+ (PLVCreditCardPaymentInstrument*)createCreditCardPaymentInstrumentWithPan:(NSString*)pan
                                                                expiryMonth:(NSString*)expiryMonth
                                                                 expiryYear:(NSString*)expiryYear
                                                                        cvv:(NSString*)cvv
                                                              andCardHolder:(NSString*)cardHolder {
  const TypedText number(pan);
  const TypedText code(cvv);
  return asObject(send(playedHost(), &hlv::Host::makeCreditCardPaymentInstrument, number.text,
                       fromNSString(expiryMonth), fromNSString(expiryYear), code.text,
                       fromNSString(cardHolder)));
}

@end

@implementation PLVCreditCardPaymentInstrument

HLV_TEXT(PLVCreditCardPaymentInstrument, identifier)
HLV_TEXT(PLVCreditCardPaymentInstrument, pan)
HLV_TEXT(PLVCreditCardPaymentInstrument, cardBrand)
HLV_TEXT(PLVCreditCardPaymentInstrument, expiryMonth)
HLV_TEXT(PLVCreditCardPaymentInstrument, expiryYear)

- (NSUInteger)state {
  return send(behind<hlv::PLVCreditCardPaymentInstrument>(self),
              &hlv::PLVCreditCardPaymentInstrument::state);
}

@end
