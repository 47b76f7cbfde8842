#include "Sandbox/Cards/Calendar.h"

#include <chrono>
#include <utility>

#include "Values/Mutex.h"

namespace hlv::sandbox {
namespace {

Mutex mutex;

std::function<YearMonth()>& installed() HLV_REQUIRES(mutex) {
  static auto& source = *new std::function<YearMonth()>;
  return source;
}

}  // namespace

YearMonth Calendar::monthOf(std::chrono::sys_seconds time) {
  const std::chrono::year_month_day date(std::chrono::floor<std::chrono::days>(time));
  return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month()))};
}

YearMonth Calendar::today() {
  const auto source = [] {
    const Lock lock(mutex);
    return installed();
  }();
  return source
             ? source()
             : monthOf(std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()));
}

void Calendar::install(std::function<YearMonth()> source) {
  const Lock lock(mutex);
  installed() = std::move(source);
}

}  // namespace hlv::sandbox
