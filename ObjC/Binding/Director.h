// The core's side of an Objective-C object: what the core calls on itself is a message to it.
//
// Threading: as the core's class.
#pragma once

#include <utility>

#include "ObjC/Binding/WeakObject.h"

namespace hlv::objc {

/// Derived from once a class. Each override sends its step to the object, whose own method calls
/// `Core`'s by its qualified name. Without the object, which goes before its core does when another
/// thread is at work in it, the step is `Core`'s at once.
template <class Core, class Object>
class Director : public Core {
 public:
  template <class... Arguments>
  explicit Director(Object* object, Arguments... arguments)
      : Core(std::move(arguments)...), reference_(object) {}
  WeakObject& reference() const { return reference_; }

 protected:
  Kept<Object> object() const { return reference_.template load<Object>(); }

 private:
  mutable WeakObject reference_;
};

}  // namespace hlv::objc
