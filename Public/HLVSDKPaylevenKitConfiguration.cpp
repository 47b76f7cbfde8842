#include "Public/HLVSDKPaylevenKitConfiguration.h"

#include <utility>

#include "Values/Send.h"

namespace hlv {

using Configuration = HLVSDKPaylevenKitConfiguration;
using MutableConfiguration = HLVSDKMutablePaylevenKitConfiguration;

std::shared_ptr<Configuration> Configuration::configurationWithBlock(
    const std::function<void(const std::shared_ptr<MutableConfiguration>&)>& block) {
  const auto configuration = MutableConfiguration::make();
  if (block) block(configuration);
  return initWithConfiguration(configuration);
}

std::shared_ptr<Configuration> Configuration::initWithConfiguration(
    const std::shared_ptr<const Configuration>& configuration) {
  return std::shared_ptr<Configuration>(
      new Configuration(send(configuration, &Configuration::paymentKey)));
}

std::shared_ptr<HLVSDKKitConfiguration> Configuration::copyWithZone() const {
  return std::shared_ptr<Configuration>(new Configuration(paymentKey()));
}

Configuration::HLVSDKPaylevenKitConfiguration(NullableString paymentKey)
    : paymentKey_(std::move(paymentKey)) {}

NullableString Configuration::paymentKey() const { return paymentKey_; }

std::shared_ptr<MutableConfiguration> MutableConfiguration::make() {
  return std::shared_ptr<MutableConfiguration>(new MutableConfiguration);
}

NullableString MutableConfiguration::paymentKey() const { return paymentKey_; }

void MutableConfiguration::setPaymentKey(NullableString paymentKey) {
  paymentKey_ = std::move(paymentKey);
}

}  // namespace hlv
