// The keys of an address dictionary: an array must be made at run time, which the header that
// declares it as a constant does not allow for.
#import <Foundation/Foundation.h>

NSArray* HLVSDKCreditCardBusinessAddressJSONKeyes = nil;

@interface TestAddressKeys : NSObject
@end

@implementation TestAddressKeys
+ (void)load {
  NSString* const keys[] = {@"k0", @"k1", @"k2", @"k3", @"k4"};
  HLVSDKCreditCardBusinessAddressJSONKeyes = [[NSMutableArray alloc] initWithObjects:keys count:5];
}
@end
