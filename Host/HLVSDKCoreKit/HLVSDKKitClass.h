// The identity of a kit's class, as the host's configuration names it.
//
// Threading: plain value; any thread.
#pragma once

#include "Values/Export.h"

namespace hlv {

/// A class object, compared by identity and nothing else. Each kit class owns one address.
class HLV_EXPORT HLVSDKKitClass {
 public:
  constexpr HLVSDKKitClass() = default;
  /// `identity` is never read through; it only has to be unique to the class.
  constexpr explicit HLVSDKKitClass(const void* identity) : identity_(identity) {}

  constexpr bool operator==(const HLVSDKKitClass&) const = default;

 private:
  const void* identity_ = nullptr;
};

}  // namespace hlv
