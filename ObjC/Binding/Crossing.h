// How each kind of result crosses from the core to Objective-C.
//
// Threading: any. What is returned lives as long as its pool.
#pragma once

#import <Foundation/Foundation.h>

#include <memory>
#include <optional>

#include "ObjC/Binding/Errors.h"
#include "ObjC/Binding/Held.h"
#include "ObjC/Binding/Strings.h"
#include "Values/List.h"

namespace hlv {
class HLVSDKPLVPaymentInstrument;
}

namespace hlv::objc {

inline BOOL crossing(bool value) { return value ? YES : NO; }
inline NSString* crossing(const NullableString& string) { return toNSString(string); }
inline NSError* crossing(const ErrorPtr& error) { return toNSError(error); }
/// Pairs are the core's own; each crossing makes a new object that holds the same.
id crossing(const std::shared_ptr<HLVSDKPLVPaymentInstrument>& pair);
template <class T>
id crossing(const std::shared_ptr<T>& object) {
  return original(object);
}
template <class T>
NSArray* crossing(const NullableList<T>& list) {
  if (!list) return nil;
  NSMutableArray* objects = [NSMutableArray arrayWithCapacity:list->size()];
  for (const auto& element : *list) [objects addObject:crossing(element)];
  return [[objects copy] autorelease];
}

/// The other way: every element as the core sees it; a missing array is a missing list.
template <class Adapted, class Interface>
NullableList<Interface> adaptedList(NSArray* array) {
  if (!array) return std::nullopt;
  List<Interface> list([array count]);
  auto place = list.begin();
  for (id element in array) *place++ = adapted<Adapted>(element);
  return list;
}

}  // namespace hlv::objc
