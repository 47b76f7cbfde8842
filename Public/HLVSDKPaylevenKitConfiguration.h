// The kit's own configuration: the Payleven payment key.
//
// Threading: a record may be read from any thread; its mutable companion belongs to the block that
// fills it in.
#pragma once

#include <functional>
#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKKitConfiguration.h"
#include "Platform/Export.h"
#include "Platform/NullableString.h"

namespace hlv {

class HLVSDKMutablePaylevenKitConfiguration;

/// Immutable. Goes into the host configuration's list of kits, beside the kit's class.
class HLV_EXPORT HLVSDKPaylevenKitConfiguration : public HLVSDKKitConfiguration {
 public:
  /// `+configurationWithBlock:`. Calls `block`, which may be empty, once and before it returns,
  /// with a fresh mutable record, and returns an immutable copy of what the block made of it.
  [[nodiscard]] static std::shared_ptr<HLVSDKPaylevenKitConfiguration> configurationWithBlock(
      const std::function<void(const std::shared_ptr<HLVSDKMutablePaylevenKitConfiguration>&)>&
          block);

  /// `-initWithConfiguration:`. An immutable record with the other's key; without one, with no key.
  [[nodiscard]] static std::shared_ptr<HLVSDKPaylevenKitConfiguration> initWithConfiguration(
      const std::shared_ptr<const HLVSDKPaylevenKitConfiguration>& configuration);

  /// `-copyWithZone:`. A new immutable record, whatever this one is.
  [[nodiscard]] std::shared_ptr<HLVSDKKitConfiguration> copyWithZone() const override;

  /// `-paymentKey`. The API key of the payment provider. It may be missing; enabling the kit
  /// refuses that, and accepts an empty one.
  virtual NullableString paymentKey() const;

 protected:
  HLVSDKPaylevenKitConfiguration() = default;

 private:
  explicit HLVSDKPaylevenKitConfiguration(NullableString paymentKey);

  NullableString paymentKey_;
};

/// What a configuration block fills in. Keeps a key of its own; the base's stays missing.
class HLV_EXPORT HLVSDKMutablePaylevenKitConfiguration final
    : public HLVSDKPaylevenKitConfiguration {
 public:
  /// `+new`
  [[nodiscard]] static std::shared_ptr<HLVSDKMutablePaylevenKitConfiguration> make();

  /// `-paymentKey`, `-setPaymentKey:`
  NullableString paymentKey() const override;
  void setPaymentKey(NullableString paymentKey);

 private:
  HLVSDKMutablePaylevenKitConfiguration() = default;

  NullableString paymentKey_;
};

}  // namespace hlv
