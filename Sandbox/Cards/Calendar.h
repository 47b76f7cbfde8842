// The month that it is now, as the card rules see it.
//
// Threading: any.
#pragma once

#include <chrono>
#include <compare>
#include <functional>

namespace hlv::sandbox {

struct YearMonth {
  int year = 0;
  int month = 0;

  auto operator<=>(const YearMonth&) const = default;
};

class Calendar {
 public:
  static YearMonth monthOf(std::chrono::sys_seconds time);
  /// The machine's month in UTC, unless another source was installed.
  static YearMonth today();
  /// Replaces the source of the month for the whole process; an empty one brings back the
  /// machine's.
  static void install(std::function<YearMonth()> source);
};

}  // namespace hlv::sandbox
