#include "Sandbox/App/Enabling.h"

#include <memory>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKKitConfiguration.h"
#include "Public/HLVSDKPayleven.h"
#include "Public/HLVSDKPaylevenKitConfiguration.h"

namespace hlv::sandbox {
namespace {

class ConfigurationOfAnotherKit final : public HLVSDKKitConfiguration {
 public:
  std::shared_ptr<HLVSDKKitConfiguration> copyWithZone() const override {
    return std::make_shared<ConfigurationOfAnotherKit>();
  }
};

std::shared_ptr<Object> kitConfiguration(Enabling enabling) {
  if (enabling == Enabling::wrongClass) return std::make_shared<ConfigurationOfAnotherKit>();
  if (enabling == Enabling::noKey) {
    return HLVSDKPaylevenKitConfiguration::configurationWithBlock(nullptr);
  }
  return HLVSDKPaylevenKitConfiguration::configurationWithBlock(
      [](const std::shared_ptr<HLVSDKMutablePaylevenKitConfiguration>& configuration) {
        configuration->setPaymentKey("paylevenkit-sandbox-key");
      });
}

}  // namespace

void enableKit(Enabling enabling) {
  if (enabling == Enabling::none) return;
  List<HLVSDKKitEntry> kits;
  if (enabling != Enabling::noEntry) {
    kits.push_back(HLVSDKKitEntry::make(HLVSDKPayleven::kitClass(), kitConfiguration(enabling)));
  }
  HLVSDKPayleven::enableWithConfiguration(HLVSDKConfiguration::make(std::move(kits)));
}

}  // namespace hlv::sandbox
