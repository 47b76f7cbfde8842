#import "ObjC/HostClasses/Configuration.h"

@interface HLVCoreKitEntry : NSObject {
 @public
  Class _kit;
  id _configuration;
}
@end

@implementation HLVCoreKitEntry

- (void)dealloc {
  [_configuration release];
  [super dealloc];
}

- (Class)kit {
  return _kit;
}

- (id)configuration {
  return _configuration;
}

@end

@interface HLVCoreConfiguration : HLVSDKConfiguration {
 @public
  NSArray* _kits;
}
@end

@implementation HLVSDKConfiguration

- (NSArray*)kits {
  return nil;
}

@end

@implementation HLVCoreConfiguration

- (void)dealloc {
  [_kits release];
  [super dealloc];
}

- (NSArray*)kits {
  return _kits;
}

@end

namespace hlv::host_classes {

id kitEntry(Class kit, id configuration) {
  HLVCoreKitEntry* const entry = [[HLVCoreKitEntry new] autorelease];
  entry->_kit = kit;
  entry->_configuration = [configuration retain];
  return entry;
}

::HLVSDKConfiguration* configurationWithEntries(NSArray* entries) {
  HLVCoreConfiguration* const configuration = [[HLVCoreConfiguration new] autorelease];
  configuration->_kits = [entries copy];
  return configuration;
}

}  // namespace hlv::host_classes
