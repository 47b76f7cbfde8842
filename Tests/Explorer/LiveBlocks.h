// How many blocks of memory are in use. The explorer's own operators count every allocation of the
// program; other programs, and those under a sanitizer, count none.
//
// Threading: one thread.
#pragma once

#include <cstddef>

namespace hlv::testing {

inline std::size_t liveBlocks = 0;
inline bool countsBlocks = true;

/// While it lives, what is allocated and freed is not counted: the explorer's own books.
struct Uncounted {
  Uncounted() { countsBlocks = false; }
  ~Uncounted() { countsBlocks = true; }
  Uncounted(const Uncounted&) = delete;
  Uncounted& operator=(const Uncounted&) = delete;
};

}  // namespace hlv::testing
