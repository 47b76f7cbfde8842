#include "Tools/Enabling.h"

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKConfiguration.h"
#include "Host/HLVSDKCoreKit/HLVSDKKitConfiguration.h"
#include "Public/HLVSDKPayleven.h"
#include "Public/HLVSDKPaylevenKitConfiguration.h"

namespace hlv::tool {
namespace {

class KitEntry final : public HLVSDKKitEntry {
 public:
  explicit KitEntry(std::shared_ptr<Object> configuration)
      : configuration_(std::move(configuration)) {}
  HLVSDKKitClass kit() const override { return HLVSDKPayleven::kitClass(); }
  std::shared_ptr<Object> configuration() const override { return configuration_; }

 private:
  const std::shared_ptr<Object> configuration_;
};

class AppConfiguration final : public HLVSDKConfiguration {
 public:
  explicit AppConfiguration(List<HLVSDKKitEntry> kits) : kits_(std::move(kits)) {}
  NullableList<HLVSDKKitEntry> kits() const override { return kits_; }

 private:
  const List<HLVSDKKitEntry> kits_;
};

class ConfigurationOfAnotherKit final : public HLVSDKKitConfiguration {
 public:
  std::shared_ptr<HLVSDKKitConfiguration> copyWithZone() const override {
    return std::make_shared<ConfigurationOfAnotherKit>();
  }
};

std::shared_ptr<Object> kitConfiguration(const std::string& way) {
  if (way == "wrong-class") return std::make_shared<ConfigurationOfAnotherKit>();
  if (way == "no-key") return HLVSDKPaylevenKitConfiguration::configurationWithBlock(nullptr);
  return HLVSDKPaylevenKitConfiguration::configurationWithBlock(
      [](const std::shared_ptr<HLVSDKMutablePaylevenKitConfiguration>& configuration) {
        configuration->setPaymentKey("paylevenkit-sandbox-key");
      });
}

}  // namespace

const std::vector<std::string>& Enabling::ways() {
  static const std::vector<std::string> ways{"normal", "no-entry", "wrong-class", "no-key", "none"};
  return ways;
}

void Enabling::enable(const std::string& way) {
  if (way == "none") return;
  List<HLVSDKKitEntry> kits;
  if (way != "no-entry") kits.push_back(std::make_shared<KitEntry>(kitConfiguration(way)));
  HLVSDKPayleven::enableWithConfiguration(std::make_shared<AppConfiguration>(std::move(kits)));
}

}  // namespace hlv::tool
