#include "Sandbox/Store/Clock.h"

#include <algorithm>

#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

/// By how many seconds the sandbox's clock is ahead of the machine's.
constexpr const char* aheadSetting = "clock-ahead";

/// Behind the last second that has a text of the usual form.
constexpr sys_seconds endOfTime = std::chrono::sys_days(std::chrono::year(10'000) / 1 / 1);

}  // namespace

sys_seconds machineTime() { return std::chrono::floor<seconds>(std::chrono::system_clock::now()); }

sys_seconds sandboxTime(Database& database) {
  const auto ahead = readSetting(database, aheadSetting);
  return std::min(machineTime() + seconds(ahead ? std::stoll(*ahead) : 0), endOfTime - seconds(1));
}

std::chrono::year_month sandboxMonth(Database& database) { return monthOf(sandboxTime(database)); }

bool setSandboxTime(Database& database, sys_seconds time) {
  if (time < sandboxTime(database) || time >= endOfTime) return false;
  writeSetting(database, aheadSetting, std::to_string((time - machineTime()).count()));
  return true;
}

void resetSandboxTime(Database& database) { writeSetting(database, aheadSetting, std::nullopt); }

}  // namespace hlv::sandbox
