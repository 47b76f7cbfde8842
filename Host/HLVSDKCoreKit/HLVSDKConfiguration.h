// The host SDK's configuration and its list of kits.
//
// Threading: read on the thread that enables the kit.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKKitClass.h"
#include "Platform/Export.h"
#include "Platform/List.h"
#include "Platform/Object.h"

namespace hlv {

/// One kit that the host is to run.
class HLV_EXPORT HLVSDKKitEntry : public Object {
 public:
  /// A ready-made entry. `configuration` may be null.
  [[nodiscard]] static std::shared_ptr<HLVSDKKitEntry> make(HLVSDKKitClass kit,
                                                            std::shared_ptr<Object> configuration);

  /// The kit's class.
  virtual HLVSDKKitClass kit() const = 0;
  /// The kit's own configuration: any object, or null.
  virtual std::shared_ptr<Object> configuration() const = 0;
};

/// The configuration that the app gives to the host SDK and to every kit that it enables.
class HLV_EXPORT HLVSDKConfiguration : public Object {
 public:
  /// A ready-made configuration with these kits.
  [[nodiscard]] static std::shared_ptr<HLVSDKConfiguration> make(NullableList<HLVSDKKitEntry> kits);

  /// The kit entries, in the app's order; may be missing.
  virtual NullableList<HLVSDKKitEntry> kits() const = 0;
};

}  // namespace hlv
