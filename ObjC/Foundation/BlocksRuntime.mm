#include "ObjC/Foundation/FoundationPlatform.h"

namespace hlv::objc {

void keepCapturedObjects() {}

}  // namespace hlv::objc

#ifdef GNUSTEP

#include <Block.h>
#import <Foundation/Foundation.h>
#include <dlfcn.h>

namespace {

// A captured object, as the compiler marks it; blocks and variables shared by reference are marked
// otherwise and stay with the runtime.
constexpr int capturedObject = 3;

template <class Function>
Function* inTheRuntime(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// The runtime defines both weakly, for whoever knows more.
extern "C" void _Block_object_assign(void* place, const void* object, const int kind) {
  static auto* const runtimes =
      inTheRuntime<decltype(_Block_object_assign)>("_Block_object_assign");
  if (kind != capturedObject) return runtimes(place, object, kind);
  *static_cast<id*>(place) = [static_cast<id>(const_cast<void*>(object)) retain];
}

extern "C" void _Block_object_dispose(const void* object, const int kind) {
  static auto* const runtimes =
      inTheRuntime<decltype(_Block_object_dispose)>("_Block_object_dispose");
  if (kind != capturedObject) return runtimes(object, kind);
  [static_cast<id>(const_cast<void*>(object)) release];
}

#endif
