#include "ObjC/Sandbox/Failure.h"

#include <stdexcept>

namespace hlv::sandbox::objc {

std::string problemOf(const std::function<void()>& work) {
  try {
    work();
    return "";
  } catch (const std::runtime_error& failure) {
    return failure.what();
  }
}

}  // namespace hlv::sandbox::objc
