// How each kind of result crosses between the core and Objective-C.
//
// Threading: any. What is returned lives as long as its pool.
#pragma once

#import <Foundation/Foundation.h>

#include <memory>
#include <optional>
#include <type_traits>

#include "ObjC/Binding/Held.h"
#include "ObjC/Binding/Strings.h"
#include "ObjC/Binding/Values.h"
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

/// The class that adapts an interface's Objective-C objects; said beside each such class.
template <class Interface>
struct AdapterOf;

/// The other way, to a result of the type `To`; nil is null, a missing text or a missing list.
template <class To>
using As = std::type_identity<To>;
inline bool asCore(BOOL value, As<bool>) { return value; }
inline NullableString asCore(NSString* string, As<NullableString>) { return fromNSString(string); }
inline ErrorPtr asCore(NSError* error, As<ErrorPtr>) { return fromNSError(error); }
/// What the pair holds now.
std::shared_ptr<HLVSDKPLVPaymentInstrument> asCore(id pair,
                                                   As<std::shared_ptr<HLVSDKPLVPaymentInstrument>>);
template <class T>
std::shared_ptr<T> asCore(id object, As<std::shared_ptr<T>>) {
  return adapted<typename AdapterOf<T>::type>(object);
}
template <class T>
NullableList<T> asCore(NSArray* array, As<NullableList<T>>) {
  if (!array) return std::nullopt;
  List<T> list([array count]);
  auto place = list.begin();
  for (id element in array) *place++ = asCore(element, As<std::shared_ptr<T>>());
  return list;
}

}  // namespace hlv::objc
