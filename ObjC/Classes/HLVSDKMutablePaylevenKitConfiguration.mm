#import <HLVSDKPaylevenKit/HLVSDKMutablePaylevenKitConfiguration.h>

@implementation HLVSDKMutablePaylevenKitConfiguration

- (void)dealloc {
  [paymentKey release];
  [super dealloc];
}

- (NSString*)paymentKey {
  return [[paymentKey retain] autorelease];
}

- (void)setPaymentKey:(NSString*)key {
  NSString* before = paymentKey;
  paymentKey = [key copy];
  [before release];
}

@end
