// Counts what is allocated. Linking it replaces the program's operator new.
//
// Threading: each thread counts its own.
#pragma once

#include <cstddef>

namespace hlv::bench {

extern thread_local std::size_t allocations;

}  // namespace hlv::bench
