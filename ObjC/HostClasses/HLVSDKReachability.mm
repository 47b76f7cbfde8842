// The host's view of the network, as an Objective-C app sees it.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "ObjC/HostClasses/PlayedHost.h"
#include "Values/Send.h"

namespace {

std::shared_ptr<hlv::HLVSDKReachability> network() {
  return hlv::send(hlv::host_classes::playedHost(), &hlv::Host::reachability);
}

}  // namespace

@implementation HLVSDKReachability

+ (HLVSDKReachability*)sharedReachability {
  static HLVSDKReachability* const reachability = [HLVSDKReachability new];
  return network() ? reachability : nil;
}

- (NSInteger)currentState {
  return static_cast<NSInteger>(hlv::send(network(), &hlv::HLVSDKReachability::currentState));
}

@end
