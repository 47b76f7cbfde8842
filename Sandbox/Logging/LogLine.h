// How a log line reads. Private to the sandbox.
//
// Threading: pure functions; any.
#pragma once

#include <string>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"

namespace hlv::sandbox {

/// Puts the arguments in place of each `%@`: a text as it is, an error as its description or else
/// its developer message, what is missing as "(null)". Card numbers come out masked.
std::string renderedLine(const std::string& format,
                         const std::vector<HLVSDKLogArgument>& arguments);

/// The line with its call site behind it, as the loggers write it.
std::string lineWithSite(const std::string& line, const char* path, int number,
                         const char* function);

/// "error", "warning", "info" and "debug" for the levels 1 to 4.
std::string levelName(int level);

}  // namespace hlv::sandbox
