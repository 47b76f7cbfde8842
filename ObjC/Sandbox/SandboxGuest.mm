#include "ObjC/Sandbox/SandboxGuest.h"

#include "ObjC/Sandbox/Answer.h"
#include "ObjC/Sandbox/OpenSandbox.h"
#include "Values/Send.h"

using hlv::sandbox::objc::asObject;
using hlv::sandbox::objc::behind;
using hlv::sandbox::objc::openHost;
using hlv::sandbox::objc::text;

@implementation HLVSDKGuest

+ (HLVSDKGuest*)currentGuest {
  return asObject(hlv::send(openHost(), &hlv::Host::currentGuest));
}

- (NSString*)email {
  return text(self, &hlv::HLVSDKGuest::email);
}

- (NSString*)paylevenToken {
  return text(self, &hlv::HLVSDKGuest::paylevenToken);
}

- (NSArray<HLVSDKCreditCard*>*)creditCards {
  return asObject(hlv::send(behind<hlv::HLVSDKGuest>(self), &hlv::HLVSDKGuest::creditCards));
}

@end

@implementation SandboxGuest

- (instancetype)initWithGuest:(const std::shared_ptr<hlv::HLVSDKGuest>&)guest {
  if ((self = [super init])) _guest = new std::shared_ptr<hlv::HLVSDKGuest>(guest);
  return self;
}

- (void)dealloc {
  delete _guest;
  [super dealloc];
}

- (std::shared_ptr<hlv::Object>)sandboxObject {
  return *_guest;
}

@end

namespace hlv::sandbox::objc {

::HLVSDKGuest* asObject(const std::shared_ptr<hlv::HLVSDKGuest>& guest) {
  if (!guest) return nil;
  if (const auto open = OpenSandbox::current()) return open->objectOf(guest);
  return [[[SandboxGuest alloc] initWithGuest:guest] autorelease];
}

}  // namespace hlv::sandbox::objc
