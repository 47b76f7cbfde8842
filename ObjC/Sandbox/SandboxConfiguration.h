// The configuration that an app gives to the host, out of its parts.
//
// Threading: immutable; any.
#pragma once

#import <HLVSDKPaylevenKit/Host/HLVSDKCoreKitDeclarations.h>

@interface SandboxConfiguration : HLVSDKConfiguration {
 @private
  NSArray<id<HLVSDKKitEntry>>* _kits;
}
- (instancetype)initWithKits:(NSArray<id<HLVSDKKitEntry>>*)kits;
@end
