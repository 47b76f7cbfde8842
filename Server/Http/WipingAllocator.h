// Memory that may hold card data and is overwritten once it is done with.
//
// Threading: the memory's own.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>

namespace hlv::sandbox::server {

/// Overwrites what it frees, so that containers that grow leave nothing behind.
template <class T>
class WipingAllocator {
 public:
  using value_type = T;
  WipingAllocator() = default;
  template <class Other>
  WipingAllocator(const WipingAllocator<Other>& /*other*/) noexcept {}

  T* allocate(std::size_t count) { return std::allocator<T>().allocate(count); }
  void deallocate(T* memory, std::size_t count) noexcept {
    ::explicit_bzero(static_cast<void*>(memory), count * sizeof(T));
    std::allocator<T>().deallocate(memory, count);
  }
  friend bool operator==(const WipingAllocator&, const WipingAllocator&) { return true; }
};

}  // namespace hlv::sandbox::server
