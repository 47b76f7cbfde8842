// The host configuration of an app whose only kit is this one.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "Public/HLVSDKPaylevenKit.h"

/// The entry that tells the host which kit to run, and with what.
class KitEntry final : public hlv::HLVSDKKitEntry {
 public:
  explicit KitEntry(std::string paymentKey)
      : configuration_(hlv::HLVSDKPaylevenKitConfiguration::configurationWithBlock(
            [&](const auto& configuration) { configuration->setPaymentKey(paymentKey); })) {}

  hlv::HLVSDKKitClass kit() const override { return hlv::HLVSDKPayleven::kitClass(); }
  std::shared_ptr<hlv::Object> configuration() const override { return configuration_; }

 private:
  const std::shared_ptr<hlv::HLVSDKPaylevenKitConfiguration> configuration_;
};

class HostConfiguration final : public hlv::HLVSDKConfiguration {
 public:
  explicit HostConfiguration(std::string paymentKey)
      : entry_(std::make_shared<KitEntry>(std::move(paymentKey))) {}

  hlv::NullableList<hlv::HLVSDKKitEntry> kits() const override {
    return hlv::List<hlv::HLVSDKKitEntry>{entry_};
  }

 private:
  const std::shared_ptr<KitEntry> entry_;
};
