#import <HLVSDKPaylevenKit/HLVSDKMutablePaylevenKitConfiguration.h>

@implementation HLVSDKPaylevenKitConfiguration

@synthesize paymentKey = _paymentKey;

+ (HLVSDKPaylevenKitConfiguration*)configurationWithBlock:
    (void (^)(HLVSDKMutablePaylevenKitConfiguration*))block {
  HLVSDKMutablePaylevenKitConfiguration* configuration =
      [[HLVSDKMutablePaylevenKitConfiguration new] autorelease];
  if (block) block(configuration);
  return [[configuration copy] autorelease];
}

- (instancetype)initWithConfiguration:(id)configuration {
  if ((self = [super init])) _paymentKey = [[configuration paymentKey] retain];
  return self;
}

- (instancetype)init {
  return [super init];
}

- (id)copyWithZone:(NSZone*)zone {
  return [[HLVSDKPaylevenKitConfiguration allocWithZone:zone] initWithConfiguration:self];
}

- (void)dealloc {
  [_paymentKey release];
  [super dealloc];
}

@end
