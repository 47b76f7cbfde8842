// The kit's log lines.
//
// Threading: any.
#pragma once

#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "Public/Managers/CallSite.h"

namespace hlv {

/// The levels that the kit uses; their names and filtering are the host's.
enum class LogLevel { failure = 1, outcome = 3, workAboutToStart = 4 };

/// Writes one line to the remote logger and then to the console logger. Each `%@` of `format`
/// stands for one of `arguments`.
void log(LogLevel level, const CallSite& site, const char* format,
         const std::vector<HLVSDKLogArgument>& arguments = {});

}  // namespace hlv
