#include "ObjC/Sandbox/SandboxUpdateGuestRequest.h"

#include "ObjC/Sandbox/OpenSandbox.h"
#include "Values/Send.h"

using hlv::objc::fromNSString;
using hlv::sandbox::objc::behind;
using hlv::sandbox::objc::openHost;

@implementation HLVSDKUpdateGuestRequestInfo

+ (instancetype)allocWithZone:(NSZone*)zone {
  if (self != [HLVSDKUpdateGuestRequestInfo class]) return [super allocWithZone:zone];
  return [SandboxUpdateGuestRequest allocWithZone:zone];
}

- (void)setPaymentToken:(NSString*)token {
  if (const auto request = behind<hlv::HLVSDKUpdateGuestRequestInfo>(self)) {
    request->setPaymentToken(fromNSString(token));
  }
}

@end

@implementation SandboxUpdateGuestRequest

- (instancetype)init {
  auto request = hlv::send(openHost(), &hlv::Host::makeUpdateGuestRequestInfo);
  if ((self = [super init])) {
    _request = new std::shared_ptr<hlv::HLVSDKUpdateGuestRequestInfo>(std::move(request));
    if (!*_request) {
      [self release];
      return nil;
    }
  }
  return self;
}

- (void)dealloc {
  delete _request;
  [super dealloc];
}

- (std::shared_ptr<hlv::Object>)sandboxObject {
  return *_request;
}

@end
