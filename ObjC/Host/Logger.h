// The host's loggers, as the core writes to them.
//
// Threading: any.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "ObjC/Binding/Crossing.h"
#include "ObjC/Host/HostMessages.h"

namespace hlv::objc {

/// One adapter for both loggers: they take the same message.
class Logger final : public Adapter<HLVSDKLogger, id> {
 public:
  using Adapter::Adapter;
  void logWithLevel(int level, const char* path, int line, const char* function, const char* format,
                    const std::vector<HLVSDKLogArgument>& arguments) override {
    // The message takes its arguments one by one; what a format does not name is not read.
    std::array<id, 3> objects{};
    for (std::size_t i = 0; i < arguments.size() && i < objects.size(); ++i) {
      objects[i] =
          std::visit([](const auto& argument) -> id { return crossing(argument); }, arguments[i]);
    }
    [toHost(object()) logWithLevel:level
                              path:path
                              line:line
                          function:function
                            format:toNSString(format), objects[0], objects[1], objects[2]];
  }
};

}  // namespace hlv::objc
