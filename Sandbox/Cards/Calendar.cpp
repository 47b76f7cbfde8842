#include "Sandbox/Cards/Calendar.h"

#include <utility>

#include "Values/Mutex.h"

namespace hlv::sandbox {
namespace {

Mutex mutex;

std::function<std::chrono::year_month()>& installed() HLV_REQUIRES(mutex) {
  static auto& source = *new std::function<std::chrono::year_month()>;
  return source;
}

}  // namespace

std::chrono::year_month Calendar::monthOf(std::chrono::sys_seconds time) {
  const std::chrono::year_month_day date(std::chrono::floor<std::chrono::days>(time));
  return date.year() / date.month();
}

std::chrono::year_month Calendar::today() {
  const auto source = [] {
    const Lock lock(mutex);
    return installed();
  }();
  return source
             ? source()
             : monthOf(std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()));
}

void Calendar::install(std::function<std::chrono::year_month()> source) {
  const Lock lock(mutex);
  installed() = std::move(source);
}

}  // namespace hlv::sandbox
