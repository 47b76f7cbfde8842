#include "ObjC/Host/Configuration.h"

#include "ObjC/Binding/Crossing.h"
#include "ObjC/Host/HostMessages.h"

namespace hlv::objc {
namespace {

class KitEntry final : public Adapter<HLVSDKKitEntry, id<HLVHostMessages>> {
 public:
  using Adapter::Adapter;
  HLVSDKKitClass kit() const override { return kitClass([object() kit]); }
  std::shared_ptr<Object> configuration() const override {
    id record = [object() configuration];
    if ([record isKindOfClass:[::HLVSDKPaylevenKitConfiguration class]]) {
      return adapted<KitConfiguration>(record);
    }
    return adapted<Adapter<Object, id>>(record);
  }
};

}  // namespace

HLVSDKKitClass kitClass(Class kit) { return HLVSDKKitClass(static_cast<const void*>(kit)); }

NullableList<HLVSDKKitEntry> Configuration::kits() const {
  return adaptedList<KitEntry, HLVSDKKitEntry>([object() kits]);
}

NullableString KitConfiguration::paymentKey() const { return fromNSString([object() paymentKey]); }

std::shared_ptr<HLVSDKKitConfiguration> KitConfiguration::copyWithZone() const {
  ::HLVSDKPaylevenKitConfiguration* copy = [[object() copy] autorelease];
  return adapted<KitConfiguration>(copy);
}

}  // namespace hlv::objc
