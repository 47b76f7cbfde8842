// The sandbox's objects behind Objective-C ones.
//
// The classes of the host and the provider have no place for instance variables. What they hand out
// are objects of private subclasses, one a class, which keep an object of the sandbox.
//
// Threading: any.
#pragma once

#import <Foundation/Foundation.h>

#include <memory>

#include "ObjC/Binding/Strings.h"
#include "Values/Object.h"
#include "Values/Secret.h"

/// What the private subclasses have in common.
@protocol SandboxObject
- (std::shared_ptr<hlv::Object>)sandboxObject;
@end

namespace hlv::sandbox::objc {

/// The sandbox's object behind `object`; null for nil and for objects of other makers.
template <class T>
std::shared_ptr<T> behind(id object) {
  if (![object respondsToSelector:@selector(sandboxObject)]) return nullptr;
  return std::dynamic_pointer_cast<T>([object sandboxObject]);
}

/// One text of it. Leaves no other copy of the characters behind, since it may be card data.
template <class T>
NSString* text(id object, NullableString (T::*field)() const) {
  const Secret characters(behind<T>(object), field);
  return hlv::objc::toNSString(characters.text());
}

}  // namespace hlv::sandbox::objc
