// Digits to look for in the memory of the running process.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace hlv::testing {

/// Digits that stand nowhere until somebody asks for them, and others for each seed. They begin as
/// some card's number does.
class HiddenDigits {
 public:
  HiddenDigits(std::uint32_t seed, std::size_t length);

  /// The last so many.
  std::string last(std::size_t count) const;
  std::string all() const { return last(values_.size()); }
  /// Whether the last ten of them stand in a private page that the process may write and has
  /// written: heap, stacks and data. An allocator writes over the beginning of what is freed.
  ///
  /// Left out are mappings that are marked as not worth dumping, which are the sanitizers' own
  /// books. Threading: no other thread runs.
  bool areInMemory() const;

 private:
  std::vector<unsigned char> values_;
};

}  // namespace hlv::testing
