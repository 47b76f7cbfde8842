// One kit that the host is to run, and its configuration.
//
// Threading: immutable; any.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

@interface SandboxKitEntry : NSObject {
 @private
  Class _kit;
  id _configuration;
}
- (instancetype)initWithKit:(Class)kit configuration:(id)configuration;
- (Class)kit;
- (id)configuration;
@end
