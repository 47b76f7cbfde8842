// The core's side of an Objective-C object: what the core calls on itself is a message to it.
//
// Threading: as the core's class.
#pragma once

#include <utility>

#include "ObjC/Binding/WeakObject.h"

namespace hlv::objc {

/// Derived from once a class. Each override sends its step to the object, whose own method calls
/// `Core`'s by its qualified name. Where the object is gone, which goes before its core does when
/// another thread is at work in it, a step does nothing, as where the core is gone.
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

/// The core of an object for the length of a call, and with it the object: a service may release it
/// before it returns.
template <class Core, class Object>
class CallOn {
 public:
  CallOn(Object* object, Core* core) : object_([object retain]), core_(core) {}
  Core* operator->() const { return core_; }

 private:
  const Kept<Object> object_;
  Core* const core_;
};

}  // namespace hlv::objc
