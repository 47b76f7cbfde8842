// The host SDK's configuration, its list of kits, and this kit's own record in it.
//
// Threading: as the objects.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitConfiguration.h>

#include "Host/HLVSDKCoreKit/HLVSDKConfiguration.h"
#include "ObjC/Binding/Held.h"
#include "Public/HLVSDKPaylevenKitConfiguration.h"

namespace hlv::objc {

/// A class object is its own identity, so that a subclass of the kit finds its own entry.
HLVSDKKitClass kitClass(Class kit);

class Configuration final : public Adapter<HLVSDKConfiguration, ::HLVSDKConfiguration*> {
 public:
  using Adapter::Adapter;
  NullableList<HLVSDKKitEntry> kits() const override;
};

/// This kit's own record, which stays the app's object.
class KitConfiguration final
    : public Adapter<HLVSDKPaylevenKitConfiguration, ::HLVSDKPaylevenKitConfiguration*> {
 public:
  using Adapter::Adapter;
  NullableString paymentKey() const override;
  std::shared_ptr<HLVSDKKitConfiguration> copyWithZone() const override;
};

}  // namespace hlv::objc
