// The host's loggers, as the core writes to them.
//
// Threading: any.
#pragma once

#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "ObjC/Binding/Held.h"

namespace hlv::objc {

/// One adapter for both loggers: they take the same message.
class Logger final : public Adapter<HLVSDKLogger, id> {
 public:
  using Adapter::Adapter;
  void logWithLevel(int level, const char* path, int line, const char* function, const char* format,
                    const std::vector<HLVSDKLogArgument>& arguments) override;
};

}  // namespace hlv::objc
