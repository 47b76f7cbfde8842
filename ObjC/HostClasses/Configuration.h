// The configuration that an app gives to the host, out of its parts.
//
// Threading: immutable; any.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

namespace hlv::host_classes {

/// One kit that the host is to run. Lives as long as its pool.
id kitEntry(Class kit, id configuration);

/// Lives as long as its pool.
::HLVSDKConfiguration* configurationWithEntries(NSArray* entries);

}  // namespace hlv::host_classes
