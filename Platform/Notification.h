// What a notification centre delivers.
//
// Threading: immutable; any thread.
#pragma once

#include "Values/Export.h"
#include "Values/NullableString.h"
#include "Values/Value.h"

namespace hlv {

/// Posted by the application framework when the app is about to return to the foreground.
inline constexpr const char* UIApplicationWillEnterForegroundNotification =
    "UIApplicationWillEnterForegroundNotification";

struct HLV_EXPORT Notification {
  /// Nobody observes a notification without a name.
  NullableString name;
  Dictionary userInfo;
};

}  // namespace hlv
