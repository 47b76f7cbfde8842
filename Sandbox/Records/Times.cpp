#include "Sandbox/Records/Times.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace hlv::sandbox {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

constexpr const char* textFormat = "%Y-%m-%dT%H:%M:%SZ";

}  // namespace

std::int64_t millisecondOf(std::chrono::system_clock::time_point time) {
  return std::chrono::floor<std::chrono::milliseconds>(time).time_since_epoch().count();
}

std::string timeText(sys_seconds time) {
  const auto seconds = std::chrono::system_clock::to_time_t(time);
  std::tm parts{};
  ::gmtime_r(&seconds, &parts);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), textFormat, &parts);
  return text.data();
}

std::string timeTextOfMilliseconds(std::int64_t since1970) {
  const auto time =
      std::chrono::sys_time<std::chrono::milliseconds>(std::chrono::milliseconds(since1970));
  const auto whole = std::chrono::floor<seconds>(time);
  auto text = timeText(whole);
  std::array<char, 8> fraction{};
  std::snprintf(fraction.data(), fraction.size(), ".%03d",
                static_cast<int>((time - whole).count()));
  return text.insert(text.size() - 1, fraction.data());
}

std::optional<sys_seconds> timeIn(const std::string& text) {
  std::tm parts{};
  const char* end = ::strptime(text.c_str(), textFormat, &parts);
  if (!end || *end) return std::nullopt;
  const auto time =
      std::chrono::floor<seconds>(std::chrono::system_clock::from_time_t(::timegm(&parts)));
  // Whatever else may be read as a time is written in another way.
  return timeText(time) == text ? std::optional<sys_seconds>(time) : std::nullopt;
}

}  // namespace hlv::sandbox
