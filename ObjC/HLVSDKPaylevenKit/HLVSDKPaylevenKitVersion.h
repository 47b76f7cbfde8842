// The version of the kit.
//
// Threading: constants; any thread.
#import <Foundation/Foundation.h>

FOUNDATION_EXPORT const double HLVSDKPaylevenKitVersionNumber;
/// Zero-terminated.
FOUNDATION_EXPORT const unsigned char HLVSDKPaylevenKitVersionString[];
