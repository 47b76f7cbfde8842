// The configuration that an app gives to the host, out of its parts.
//
// Threading: immutable; any.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

@interface SandboxConfiguration : HLVSDKConfiguration {
 @private
  NSArray* _kits;
}
- (instancetype)initWithKits:(NSArray*)kits;
@end
