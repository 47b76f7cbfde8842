// How many blocks of memory are in use. Linking this counts every allocation of the program, and
// none under a sanitizer.
//
// Threading: any; the count is exact while one thread allocates.
#pragma once

#include <cstddef>

namespace hlv::testing {

std::size_t liveBlocks();

}  // namespace hlv::testing
