#import <HLVSDKPaylevenKit/HLVSDKAddPaylevenCreditCardRequestInfo.h>
#import <HLVSDKPaylevenKit/HalvoErrorsDeclarations.h>

#include "ObjC/Host/Services.h"

@implementation HLVSDKAddPaylevenCreditCardRequestInfo

@synthesize paylevenToken = _paylevenToken;

- (instancetype)initWithPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
                           billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress
                            paylevenToken:(NSString*)paylevenToken {
  self = [super initWithPaymentInstrument:paymentInstrument billingAddress:billingAddress];
  if (self) {
    [self setPaylevenToken:paylevenToken];
    [hlv::objc::toHost(self) setProvider:0];
  }
  return self;
}

- (instancetype)initWithPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
                           billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress {
  return [self initWithPaymentInstrument:paymentInstrument
                          billingAddress:billingAddress
                           paylevenToken:nil];
}

- (void)dealloc {
  [_paylevenToken release];
  [super dealloc];
}

// The host's body is the host's: it crosses nothing on its way, so that every value of it stays.
- (NSDictionary*)JSONRepresentation {
  NSMutableDictionary* const body = [[[super JSONRepresentation] mutableCopy] autorelease];
  NSString* const token = [self paylevenToken];
  id const hostCard = [body objectForKey:@"credit_card"];
  if (token && [hostCard isKindOfClass:[NSDictionary class]]) {
    NSMutableDictionary* const card = [[hostCard mutableCopy] autorelease];
    [card setObject:token forKey:@"plv_token"];
    [body setObject:[[card copy] autorelease] forKey:@"credit_card"];
  }
  return [[body copy] autorelease];
}

- (BOOL)isValid:(NSError**)error {
  if (![super isValid:error]) return NO;
  NSString* const token = [self paylevenToken];
  if ([token length] > 0) return YES;
  NSError* const reason =
      [[[HLVErrorFacade new] autorelease] invalidArgumentErrorWithName:@"paylevenToken"
                                                                 value:token
                                                               message:nil];
  if (error) *error = reason;
  return NO;
}

@end
