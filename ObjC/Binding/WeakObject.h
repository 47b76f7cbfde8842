// A weak reference to an Objective-C object whose references are counted by hand.
//
// Threading: any.
#pragma once

#import <Foundation/Foundation.h>

namespace hlv::objc {

/// Holds an object, retained, for the length of a call.
template <class Class>
class Kept {
 public:
  explicit Kept(Class* retained) : object_(retained) {}
  Kept(const Kept&) = delete;
  Kept& operator=(const Kept&) = delete;
  ~Kept() { [object_ release]; }
  Class* operator*() const { return object_; }

 private:
  Class* const object_;
};

/// Nil from the moment at which the object's last reference goes.
class WeakObject {
 public:
  explicit WeakObject(id object);
  WeakObject(const WeakObject&) = delete;
  WeakObject& operator=(const WeakObject&) = delete;
  ~WeakObject();

  template <class Class>
  Kept<Class> load() {
    return Kept<Class>(static_cast<Class*>(loadRetained()));
  }

#ifdef GNUSTEP
  /// The runtime here has no weak references, so `-release` of a class that is referred to weakly
  /// asks this, and deallocates the object when the result is true. `reference` may be null.
  static bool wasLastRelease(id object, WeakObject* reference);
#endif

 private:
  id loadRetained() NS_RETURNS_RETAINED;

  id object_;
};

}  // namespace hlv::objc
