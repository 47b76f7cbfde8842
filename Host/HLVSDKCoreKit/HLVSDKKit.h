// The protocol of a kit that the host SDK can run.
#pragma once

#include "Values/Export.h"
#include "Values/Object.h"

namespace hlv {

/// A kit class also has the class operations `+enableWithConfiguration:` and `+sharedInstance`, as
/// static members.
class HLV_EXPORT HLVSDKKit : public Object {
 public:
  /// `-start`
  virtual void start() = 0;
};

}  // namespace hlv
