// Digits to look for in the memory of the running process.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace hlv::testing {

/// Digits that stand nowhere until somebody asks for them, and others for each seed. They begin as
/// some card's number does.
class HiddenDigits {
 public:
  HiddenDigits(std::uint32_t seed, std::size_t length) : values_{4} {
    std::minstd_rand random(seed);
    while (values_.size() < length) values_.push_back(static_cast<unsigned char>(random() % 10U));
  }

  /// The last so many.
  std::string last(std::size_t count) const {
    std::string digits(count, '0');
    std::transform(values_.rbegin(), values_.rbegin() + static_cast<std::ptrdiff_t>(count),
                   digits.rbegin(), [](int value) { return static_cast<char>('0' + value); });
    return digits;
  }
  /// All of them; on the heap with the same behind its end, as a text that was shortened.
  std::string all() const {
    const auto count = values_.size();
    std::string digits(count > 15 ? 2 * count : count, '0');
    for (std::size_t i = 0; i < digits.size(); ++i) {
      digits[i] = static_cast<char>('0' + values_[i % count]);
    }
    digits.resize(count);
    return digits;
  }
  /// Whether the last ten of them stand in a private page that the process may write: heap, stacks
  /// and data. An allocator writes over the beginning of what is freed.
  ///
  /// Left out are mappings that are marked as not worth dumping, which are the sanitizers' own
  /// books. Threading: no other thread runs.
  bool areInMemory() const {
    constexpr std::size_t space = step + searched;
    const int memory = ::open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
    // Shared, so that neither what is read nor what is looked for is found there.
    auto* const window = static_cast<char*>(::mmap(
        nullptr, space + searched, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    if (memory < 0 || window == MAP_FAILED) throw std::runtime_error("no memory");
    auto* const wanted = window + space;
    for (std::size_t i = 0; i < searched; ++i) {
      wanted[i] = static_cast<char>('0' + values_[values_.size() - searched + i]);
    }
    bool areThere = false;
    for (const auto& [begin, end] : privateWritableMappings()) {
      for (auto at = begin; at < end && !areThere; at += step) {
        const auto size =
            ::pread(memory, window, std::min(space, end - at), static_cast<off_t>(at));
        areThere = size > 0 && ::memmem(window, static_cast<std::size_t>(size), wanted, searched);
      }
    }
    ::munmap(window, space + searched);
    ::close(memory);
    return areThere;
  }

 private:
  static constexpr std::size_t step = 1U << 16U;
  /// So many digits are not there by chance, in addresses that are written out.
  static constexpr std::size_t searched = 10;

  static std::vector<std::pair<std::size_t, std::size_t>> privateWritableMappings() {
    std::vector<std::pair<std::size_t, std::size_t>> mappings;
    std::ifstream list("/proc/self/smaps");
    bool wanted = false;
    for (std::string line; std::getline(list, line);) {
      std::istringstream words(line);
      std::size_t begin = 0, end = 0;
      char dash = 0;
      std::string rights;
      if (words >> std::hex >> begin >> dash >> end >> rights && dash == '-') {
        wanted = rights == "rw-p";
        if (wanted) mappings.emplace_back(begin, end);
      } else if (wanted && line.starts_with("VmFlags:") && line.find(" dd") != std::string::npos) {
        mappings.pop_back();
      }
    }
    return mappings;
  }

  std::vector<unsigned char> values_;
};

}  // namespace hlv::testing
