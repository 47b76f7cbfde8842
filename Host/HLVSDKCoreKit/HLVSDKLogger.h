// The host's two loggers.
#pragma once

#include <memory>
#include <variant>
#include <vector>

#include "Host/Host.h"
#include "Values/Error.h"
#include "Values/Export.h"
#include "Values/NullableString.h"
#include "Values/Object.h"

namespace hlv {

/// What stands for one `%@` of a format.
using HLVSDKLogArgument = std::variant<NullableString, ErrorPtr>;

/// Implementations must
/// - take lines from any thread, and filter and render them themselves: the kit gives the format
///   and its arguments unrendered;
/// - copy what they keep: the strings are valid during the call only.
class HLV_EXPORT HLVSDKLogger : public Object {
 public:
  /// `-logWithLevel:path:line:function:format:` and the format's arguments. The kit uses the levels
  /// 1 (failure), 3 (outcome) and 4 (work about to start). `path`, `line` and `function` name the
  /// call site and are never null.
  virtual void logWithLevel(int level, const char* path, int line, const char* function,
                            const char* format,
                            const std::vector<HLVSDKLogArgument>& arguments) = 0;
};

/// Lines for the people who run the service.
class HLV_EXPORT HLVSDKRemoteLogger {
 public:
  /// `+sharedLogger`
  static std::shared_ptr<HLVSDKLogger> sharedLogger() { return Host::ask(&Host::remoteLogger); }
};

/// Lines for the developer at the console.
class HLV_EXPORT HLVSDKConsoleLogger {
 public:
  /// `+sharedLogger`
  static std::shared_ptr<HLVSDKLogger> sharedLogger() { return Host::ask(&Host::consoleLogger); }
};

}  // namespace hlv
