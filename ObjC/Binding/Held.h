// Objective-C objects as the core sees them, and back.
//
// Threading: as the object that is held.
#pragma once

#import <Foundation/Foundation.h>

#include <memory>

#include "Values/Object.h"

namespace hlv::objc {

/// Keeps an Objective-C object alive for the core.
class Held {
 public:
  [[gnu::noinline]] explicit Held(id object) : object_([object retain]) {}
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  [[gnu::noinline]] virtual ~Held() { [object_ release]; }
  id held() const { return object_; }

 private:
  const id object_;
};

// Here once for all kinds.
[[gnu::noinline]] inline std::shared_ptr<Held> counted(Held* made) {
  return std::shared_ptr<Held>(made);
}
[[gnu::noinline]] inline id originalOf(const Held* held) {
  return held ? [[held->held() retain] autorelease] : nil;
}
[[gnu::noinline]] inline id originalOf(const Object* object) {
  return originalOf(dynamic_cast<const Held*>(object));
}

/// An Objective-C object that plays one of the core's interfaces.
template <class Interface, class Original>
class Adapter : public Interface, public Held {
 public:
  explicit Adapter(Original object) : Held(object) {}

 protected:
  Original object() const { return static_cast<Original>(held()); }
};

/// `object` as the core sees it; nil is null. All adapters are counted as what they hold, so that
/// the code for it is there once.
template <class Adapted>
[[gnu::noinline]] std::shared_ptr<Adapted> adapted(id object) {
  if (!object) return nullptr;
  auto* const made = new Adapted(object);
  return std::shared_ptr<Adapted>(counted(made), made);
}

/// The very object that an adapter was made of; nil for null. It lives as long as its pool.
template <class T>
id original(const std::shared_ptr<T>& object) {
  return originalOf(object.get());
}

}  // namespace hlv::objc
