// How long something takes, when other programs on the machine do not count.
#pragma once

#include <ctime>

namespace hlv::bench {

/// Of processor time of this thread.
template <class Work>
double secondsOf(Work work) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
  };
  const double start = now();
  work();
  return now() - start;
}

}  // namespace hlv::bench
