// Times as texts.
//
// Threading: pure functions; any.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace hlv::sandbox {

/// Milliseconds since 1970.
std::int64_t millisecondOf(std::chrono::system_clock::time_point time);
/// "2026-11-22T07:53:01Z"
std::string timeText(std::chrono::sys_seconds time);
/// The same with milliseconds, as events keep it.
std::string timeTextOfMilliseconds(std::int64_t since1970);
/// Reads what `timeText` writes without milliseconds; missing for anything else.
std::optional<std::chrono::sys_seconds> timeIn(const std::string& text);

}  // namespace hlv::sandbox
