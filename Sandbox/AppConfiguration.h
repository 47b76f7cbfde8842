// What an app hands to a kit when it enables it.
//
// Threading: any.
#pragma once

#include <memory>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKConfiguration.h"

namespace hlv::sandbox {

/// Names kits, each with a configuration of its own.
class AppConfiguration final : public HLVSDKConfiguration {
 public:
  /// One kit; the configuration may be null, and of any class.
  class Entry final : public HLVSDKKitEntry {
   public:
    Entry(HLVSDKKitClass kit, std::shared_ptr<Object> configuration)
        : kit_(kit), configuration_(std::move(configuration)) {}
    HLVSDKKitClass kit() const override { return kit_; }
    std::shared_ptr<Object> configuration() const override { return configuration_; }

   private:
    const HLVSDKKitClass kit_;
    const std::shared_ptr<Object> configuration_;
  };

  explicit AppConfiguration(List<HLVSDKKitEntry> kits) : kits_(std::move(kits)) {}
  NullableList<HLVSDKKitEntry> kits() const override { return kits_; }

 private:
  const List<HLVSDKKitEntry> kits_;
};

}  // namespace hlv::sandbox
