#include "ObjC/Sandbox/SandboxSession.h"

#include "ObjC/Sandbox/OpenSandbox.h"
#include "Values/Send.h"

using hlv::sandbox::objc::behind;
using hlv::sandbox::objc::openHost;

@implementation HLVSession

+ (HLVSession*)activeSession {
  const auto session = hlv::send(openHost(), &hlv::Host::activeSession);
  return session ? [[[SandboxSession alloc] initWithSession:session] autorelease] : nil;
}

- (BOOL)isAuthorized {
  return hlv::send(behind<hlv::HLVSession>(self), &hlv::HLVSession::isAuthorized);
}

@end

@implementation SandboxSession

- (instancetype)initWithSession:(const std::shared_ptr<hlv::HLVSession>&)session {
  if ((self = [super init])) _session = new std::shared_ptr<hlv::HLVSession>(session);
  return self;
}

- (void)dealloc {
  delete _session;
  [super dealloc];
}

- (std::shared_ptr<hlv::Object>)sandboxObject {
  return *_session;
}

@end
