// The protocol of a kit's own configuration record.
#pragma once

#include <memory>

#include "Values/Export.h"
#include "Values/Object.h"

namespace hlv {

/// All that the host asks of a kit configuration is that it can be copied.
class HLV_EXPORT HLVSDKKitConfiguration : public Object {
 public:
  /// `-copyWithZone:`. Returns a new, immutable record. Memory zones have no meaning here, so the
  /// argument is left out.
  virtual std::shared_ptr<HLVSDKKitConfiguration> copyWithZone() const = 0;
};

}  // namespace hlv
