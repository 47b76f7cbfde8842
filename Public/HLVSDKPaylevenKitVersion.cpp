#include "Public/HLVSDKPaylevenKitVersion.h"

const double HLVSDKPaylevenKitVersionNumber = 1.0;
const unsigned char HLVSDKPaylevenKitVersionString[] =
    "@(#)PROGRAM:HLVSDKPaylevenKit  PROJECT:HLVSDKPaylevenKit-1\n";
