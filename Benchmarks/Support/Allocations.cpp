#include "Benchmarks/Support/Allocations.h"

#include <cstdlib>
#include <new>

thread_local std::size_t hlv::bench::allocations = 0;

// The array and nothrow forms come back to this one.
void* operator new(std::size_t size) {
  ++hlv::bench::allocations;
  if (void* const memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
