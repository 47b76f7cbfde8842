#include "ObjC/Binding/WeakObject.h"

#include <mutex>

#ifdef GNUSTEP

namespace hlv::objc {
namespace {

// Between a last release and the clearing of the reference nobody may retain the object.
std::mutex& releaseMutex() {
  static auto& mutex = *new std::mutex;
  return mutex;
}

}  // namespace

WeakObject::WeakObject(id object) : object_(object) {}

WeakObject::~WeakObject() = default;

id WeakObject::loadRetained() {
  const std::lock_guard lock(releaseMutex());
  return [object_ retain];
}

bool WeakObject::wasLastRelease(id object, WeakObject* reference) {
  const std::lock_guard lock(releaseMutex());
  if (!NSDecrementExtraRefCountWasZero(object)) return false;
  if (reference) reference->object_ = nil;
  return true;
}

}  // namespace hlv::objc

#else

extern "C" id objc_initWeak(id* place, id object);
extern "C" id objc_loadWeakRetained(id* place);
extern "C" void objc_destroyWeak(id* place);

namespace hlv::objc {

WeakObject::WeakObject(id object) { objc_initWeak(&object_, object); }

WeakObject::~WeakObject() { objc_destroyWeak(&object_); }

id WeakObject::loadRetained() { return objc_loadWeakRetained(&object_); }

}  // namespace hlv::objc

#endif
