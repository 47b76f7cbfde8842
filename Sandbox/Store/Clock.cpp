#include "Sandbox/Store/Clock.h"

#include <array>
#include <cstdio>

#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

/// By how many seconds the sandbox's clock is ahead of the machine's.
constexpr const char* aheadSetting = "clock-ahead";

sys_seconds machineTime() { return std::chrono::floor<seconds>(std::chrono::system_clock::now()); }

}  // namespace

sys_seconds sandboxTime(Database& database) {
  const auto ahead = readSetting(database, aheadSetting);
  return machineTime() + seconds(ahead ? std::stoll(*ahead) : 0);
}

YearMonth sandboxMonth(Database& database) {
  if (!readSetting(database, aheadSetting)) return Calendar::today();
  const std::chrono::year_month_day date(
      std::chrono::floor<std::chrono::days>(sandboxTime(database)));
  return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month()))};
}

bool setSandboxTime(Database& database, sys_seconds time) {
  constexpr sys_seconds end = std::chrono::sys_days(std::chrono::year(10'000) / 1 / 1);
  if (time < sandboxTime(database) || time >= end) return false;
  writeSetting(database, aheadSetting, std::to_string((time - machineTime()).count()));
  return true;
}

void resetSandboxTime(Database& database) { writeSetting(database, aheadSetting, std::nullopt); }

std::string timeText(sys_seconds time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
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
  int year = 0;
  unsigned month = 0;
  unsigned day = 0;
  int hours = 0;
  int minutes = 0;
  int rest = 0;
  if (std::sscanf(text.c_str(), "%4d-%2u-%2uT%2d:%2d:%2dZ", &year, &month, &day, &hours, &minutes,
                  &rest) != 6) {
    return std::nullopt;
  }
  const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month),
                                         std::chrono::day(day)};
  if (!date.ok()) return std::nullopt;
  const auto time = std::chrono::sys_days(date) + std::chrono::hours(hours) +
                    std::chrono::minutes(minutes) + seconds(rest);
  // Whatever else may be read as numbers is written in another way.
  return timeText(time) == text ? std::optional<sys_seconds>(time) : std::nullopt;
}

}  // namespace hlv::sandbox
