#import <HLVSDKPaylevenKit/HLVSDKMutablePaylevenKitConfiguration.h>

@implementation HLVSDKPaylevenKitConfiguration

+ (instancetype)configurationWithBlock:(void (^)(HLVSDKMutablePaylevenKitConfiguration*))block {
  HLVSDKMutablePaylevenKitConfiguration* configuration =
      [[HLVSDKMutablePaylevenKitConfiguration new] autorelease];
  if (block) block(configuration);
  return [[configuration copy] autorelease];
}

- (instancetype)initWithConfiguration:(HLVSDKPaylevenKitConfiguration*)configuration {
  if ((self = [super init])) _paymentKey = [[configuration paymentKey] retain];
  return self;
}

- (id)copyWithZone:(NSZone*)zone {
  return [[HLVSDKPaylevenKitConfiguration allocWithZone:zone] initWithConfiguration:self];
}

- (void)dealloc {
  [_paymentKey release];
  [super dealloc];
}

- (NSString*)paymentKey {
  return [[_paymentKey retain] autorelease];
}

@end
