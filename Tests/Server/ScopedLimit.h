// Less of something than the system would give.
#pragma once

#include <sys/resource.h>

namespace hlv::testing {

/// Lowers what the process may use of a resource, for as long as it lives.
template <auto resource>
class ScopedLimit {
 public:
  explicit ScopedLimit(rlim_t limit) {
    ::getrlimit(resource, &before_);
    const rlimit lowered{limit, before_.rlim_max};
    ::setrlimit(resource, &lowered);
  }
  ~ScopedLimit() { ::setrlimit(resource, &before_); }
  ScopedLimit(const ScopedLimit&) = delete;
  ScopedLimit& operator=(const ScopedLimit&) = delete;

 private:
  rlimit before_{};
};

}  // namespace hlv::testing
