#import <HLVSDKPaylevenKit/HLVSDKMutablePaylevenKitConfiguration.h>

@implementation HLVSDKMutablePaylevenKitConfiguration

@synthesize paymentKey;

- (void)dealloc {
  [paymentKey release];
  [super dealloc];
}

@end
