// The version of the kit, as data that any language can read.
//
// Threading: constants; any thread.
#pragma once

#include "Values/Export.h"

#ifdef __cplusplus
extern "C" {
#endif

HLV_EXPORT extern const double HLVSDKPaylevenKitVersionNumber;
/// Zero-terminated.
HLV_EXPORT extern const unsigned char HLVSDKPaylevenKitVersionString[];

#ifdef __cplusplus
}
#endif
