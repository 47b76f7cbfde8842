#import "ObjC/Sandbox/SandboxConfiguration.h"

@implementation HLVSDKConfiguration

- (NSArray*)kits {
  return nil;
}

@end

@implementation SandboxConfiguration

- (instancetype)initWithKits:(NSArray*)kits {
  if ((self = [super init])) _kits = [kits copy];
  return self;
}

- (void)dealloc {
  [_kits release];
  [super dealloc];
}

- (NSArray*)kits {
  return _kits;
}

@end
