#include "ObjC/Binding/AnyString.h"

#ifdef GNUSTEP

#include <algorithm>

/// A string that holds what it is given.
@interface HLVAnyString : NSString {
 @private
  std::u16string* _units;
}
- (instancetype)initWithUnits:(const std::u16string&)units;
@end

@implementation HLVAnyString

- (instancetype)initWithUnits:(const std::u16string&)units {
  if ((self = [super init])) _units = new std::u16string(units);
  return self;
}

- (void)dealloc {
  delete _units;
  [super dealloc];
}

- (NSUInteger)length {
  return _units->size();
}

- (unichar)characterAtIndex:(NSUInteger)index {
  return _units->at(index);
}

- (void)getCharacters:(unichar*)buffer range:(NSRange)range {
  _units->copy(reinterpret_cast<char16_t*>(buffer), range.length, range.location);
}

- (id)copyWithZone:(NSZone*)zone {
  (void)zone;
  return [self retain];
}

@end

namespace hlv::objc {

NSString* newStringOfUnits(const std::u16string& units) {
  NSString* const made =
      [[NSString alloc] initWithCharacters:reinterpret_cast<const unichar*>(units.data())
                                    length:units.size()];
  if ([made length] == units.size()) return made;
  [made release];
  return [[HLVAnyString alloc] initWithUnits:units];
}

}  // namespace hlv::objc

#else

namespace hlv::objc {

NSString* newStringOfUnits(const std::u16string& units) {
  return [[NSString alloc] initWithCharacters:reinterpret_cast<const unichar*>(units.data())
                                       length:units.size()];
}

}  // namespace hlv::objc

#endif
