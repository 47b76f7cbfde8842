#include "Sandbox/Records/Times.h"

#include <fmt/chrono.h>

#include <ctime>

namespace hlv::sandbox {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

}  // namespace

std::int64_t millisecondOf(std::chrono::system_clock::time_point time) {
  return std::chrono::floor<std::chrono::milliseconds>(time).time_since_epoch().count();
}

std::string timeText(sys_seconds time) {
  return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}",
                     fmt::gmtime(std::chrono::system_clock::to_time_t(time)));
}

std::string timeTextOfMilliseconds(std::int64_t since1970) {
  const std::chrono::milliseconds time(since1970);
  const auto whole = std::chrono::floor<seconds>(time);
  return fmt::format("{:%Y-%m-%dT%H:%M:%S}.{:03}Z", fmt::gmtime(whole.count()),
                     (time - whole).count());
}

std::optional<sys_seconds> timeIn(const std::string& text) {
  std::tm parts{};
  const char* end = ::strptime(text.c_str(), "%Y-%m-%dT%H:%M:%SZ", &parts);
  if (!end || *end) return std::nullopt;
  const auto time =
      std::chrono::floor<seconds>(std::chrono::system_clock::from_time_t(::timegm(&parts)));
  // Whatever else may be read as a time is written in another way.
  return timeText(time) == text ? std::optional<sys_seconds>(time) : std::nullopt;
}

}  // namespace hlv::sandbox
