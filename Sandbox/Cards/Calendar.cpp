#include "Sandbox/Cards/Calendar.h"

#include <chrono>
#include <mutex>
#include <utility>

namespace hlv::sandbox {
namespace {

std::mutex mutex;

std::function<YearMonth()>& installed() {
  static auto& source = *new std::function<YearMonth()>;
  return source;
}

YearMonth monthOfTheMachine() {
  const std::chrono::year_month_day date(
      std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now()));
  return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month()))};
}

}  // namespace

YearMonth Calendar::today() {
  std::function<YearMonth()> source;
  {
    const std::lock_guard lock(mutex);
    source = installed();
  }
  return source ? source() : monthOfTheMachine();
}

void Calendar::install(std::function<YearMonth()> source) {
  const std::lock_guard lock(mutex);
  installed() = std::move(source);
}

}  // namespace hlv::sandbox
