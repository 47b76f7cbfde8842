// The keys of an address dictionary, as a host changes them.
#import <Foundation/Foundation.h>

// The header that declares the list, which is left out here, calls it a constant.
extern "C" {
extern NSArray* HLVSDKCreditCardBusinessAddressJSONKeyes;
void setAddressKeys(NSArray* keys);
}

void setAddressKeys(NSArray* keys) { HLVSDKCreditCardBusinessAddressJSONKeyes = keys; }
