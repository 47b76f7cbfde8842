#include "ObjC/Sandbox/Failure.h"

#include <stdexcept>

namespace hlv::sandbox::objc {

std::string problemOf(const std::function<std::string()>& work) {
  try {
    return work();
  } catch (const std::runtime_error& failure) {
    return failure.what();
  }
}

}  // namespace hlv::sandbox::objc
