#include "Tools/Enabling.h"

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKKitConfiguration.h"
#include "Public/HLVSDKPayleven.h"
#include "Public/HLVSDKPaylevenKitConfiguration.h"

namespace hlv::tool {
namespace {

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

std::vector<std::string> Enabling::ways() {
  return {"normal", "no-entry", "wrong-class", "no-key", "none"};
}

void Enabling::enable(const std::string& way) {
  if (way == "none") return;
  List<HLVSDKKitEntry> kits;
  if (way != "no-entry") {
    kits.push_back(HLVSDKKitEntry::make(HLVSDKPayleven::kitClass(), kitConfiguration(way)));
  }
  HLVSDKPayleven::enableWithConfiguration(HLVSDKConfiguration::make(std::move(kits)));
}

}  // namespace hlv::tool
