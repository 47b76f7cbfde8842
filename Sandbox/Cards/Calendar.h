// The month that it is now, as the card rules see it.
//
// Threading: any.
#pragma once

#include <chrono>
#include <functional>

namespace hlv::sandbox {

class Calendar {
 public:
  static std::chrono::year_month monthOf(std::chrono::sys_seconds time);
  /// The machine's month in UTC, unless another source was installed.
  static std::chrono::year_month today();
  /// Replaces the source of the month for the whole process; an empty one brings back the
  /// machine's.
  static void install(std::function<std::chrono::year_month()> source);
};

}  // namespace hlv::sandbox
