// How many blocks of memory are in use. Linking this counts every allocation of the program, and
// none under a sanitizer.
//
// Threading: one thread.
#pragma once

#include <cstddef>

namespace hlv::testing {

std::size_t liveBlocks();

inline bool countsBlocks = true;

/// While it lives, what is allocated and freed is not counted: the explorer's own books.
struct Uncounted {
  Uncounted() { countsBlocks = false; }
  ~Uncounted() { countsBlocks = true; }
  Uncounted(const Uncounted&) = delete;
  Uncounted& operator=(const Uncounted&) = delete;
};

}  // namespace hlv::testing
