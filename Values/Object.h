// The root of what the kit receives as "any object".
#pragma once

#include "Values/Export.h"

namespace hlv {

/// Gives the kit something to ask for its kind. Objects are shared and never copied.
class HLV_EXPORT Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;
};

}  // namespace hlv
