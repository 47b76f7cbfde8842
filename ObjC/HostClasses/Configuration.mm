#import "ObjC/HostClasses/Configuration.h"

@interface HLVCoreKitEntry : NSObject {
 @private
  Class _kit;
  id _configuration;
}
@property(nonatomic, assign) Class kit;
@property(nonatomic, retain) id configuration;
@end

@implementation HLVCoreKitEntry

@synthesize kit = _kit, configuration = _configuration;

- (void)dealloc {
  [_configuration release];
  [super dealloc];
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
  [entry setKit:kit];
  [entry setConfiguration:configuration];
  return entry;
}

::HLVSDKConfiguration* configurationWithEntries(NSArray* entries) {
  HLVCoreConfiguration* const configuration = [[HLVCoreConfiguration new] autorelease];
  configuration->_kits = [entries copy];
  return configuration;
}

}  // namespace hlv::host_classes
