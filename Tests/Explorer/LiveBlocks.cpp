#include "Tests/Explorer/LiveBlocks.h"

#include <cstdlib>
#include <new>

namespace {
std::size_t live = 0;
}  // namespace

// The sanitizers bring operators of their own, and one of them looks for leaks itself.
#ifdef HLV_COUNTS_BLOCKS

void* operator new(std::size_t size) {
  void* block = std::malloc(size == 0 ? 1 : size);
  if (!block) throw std::bad_alloc();
  if (hlv::testing::countsBlocks) ++live;
  return block;
}

void operator delete(void* block) noexcept {
  if (block && hlv::testing::countsBlocks) --live;
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

#endif

namespace hlv::testing {

std::size_t liveBlocks() { return live; }

}  // namespace hlv::testing
