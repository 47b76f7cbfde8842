// The keys of an address dictionary.
#import <Foundation/Foundation.h>

// The declaration is left out here, because it calls the list a constant. A compiler cannot write
// an array down as it does a string, so the list is made when the class below is loaded, which is
// before any code of an app runs.
extern "C" {
NSArray* HLVSDKCreditCardBusinessAddressJSONKeyes = nil;
}

@interface HLVCoreAddressKeys : NSObject
@end

@implementation HLVCoreAddressKeys

+ (void)load {
  HLVSDKCreditCardBusinessAddressJSONKeyes = [[NSArray alloc]
      initWithObjects:@"street", @"city", @"country_code", @"zip", @"business_name", nil];
}

@end
