#import "ObjC/Sandbox/SandboxKitEntry.h"

@implementation SandboxKitEntry

- (instancetype)initWithKit:(Class)kit configuration:(id)configuration {
  if ((self = [super init])) {
    _kit = kit;
    _configuration = [configuration retain];
  }
  return self;
}

- (void)dealloc {
  [_configuration release];
  [super dealloc];
}

- (Class)kit {
  return _kit;
}

- (id)configuration {
  return _configuration;
}

@end
