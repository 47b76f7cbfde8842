#import "ObjC/Sandbox/SandboxConfiguration.h"

@implementation HLVSDKConfiguration

- (NSArray<id<HLVSDKKitEntry>>*)kits {
  return nil;
}

@end

@implementation SandboxConfiguration

- (instancetype)initWithKits:(NSArray<id<HLVSDKKitEntry>>*)kits {
  if ((self = [super init])) _kits = [kits copy];
  return self;
}

- (void)dealloc {
  [_kits release];
  [super dealloc];
}

- (NSArray<id<HLVSDKKitEntry>>*)kits {
  return _kits;
}

@end
