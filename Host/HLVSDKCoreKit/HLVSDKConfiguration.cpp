#include "Host/HLVSDKCoreKit/HLVSDKConfiguration.h"

#include <utility>

namespace hlv {
namespace {

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

class Configuration final : public HLVSDKConfiguration {
 public:
  explicit Configuration(NullableList<HLVSDKKitEntry> kits) : kits_(std::move(kits)) {}
  NullableList<HLVSDKKitEntry> kits() const override { return kits_; }

 private:
  const NullableList<HLVSDKKitEntry> kits_;
};

}  // namespace

std::shared_ptr<HLVSDKKitEntry> HLVSDKKitEntry::make(HLVSDKKitClass kit,
                                                     std::shared_ptr<Object> configuration) {
  return std::make_shared<Entry>(kit, std::move(configuration));
}

std::shared_ptr<HLVSDKConfiguration> HLVSDKConfiguration::make(NullableList<HLVSDKKitEntry> kits) {
  return std::make_shared<Configuration>(std::move(kits));
}

}  // namespace hlv
