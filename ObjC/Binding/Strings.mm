#include "ObjC/Binding/Strings.h"

namespace hlv::objc {

NullableString fromNSString(NSString* string) {
  NullableString text;
  if (!string) return text;
  // One more byte for the end that Foundation writes.
  text.emplace([string lengthOfBytesUsingEncoding:NSUTF8StringEncoding] + 1, '\0');
  [string getCString:text->data() maxLength:text->size() encoding:NSUTF8StringEncoding];
  text->pop_back();
  return text;
}

NSString* newNSString(const NullableString& string) {
  if (!string) return nil;
  return [[NSString alloc] initWithBytes:string->data()
                                  length:string->size()
                                encoding:NSUTF8StringEncoding];
}

NSString* toNSString(const NullableString& string) { return [newNSString(string) autorelease]; }

}  // namespace hlv::objc
