#include "Tests/Secrecy/ProcessMemory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace hlv::testing {
namespace {

constexpr std::size_t pageSize = 4096;
constexpr std::size_t pagesAPiece = 16;
/// What could lie across two pieces.
constexpr std::size_t overlap = 32;

std::vector<std::pair<std::size_t, std::size_t>> privateWritableMappings() {
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

}  // namespace

std::size_t showProcessMemory(const std::function<bool(std::string_view bytes)>& look) {
  constexpr std::size_t space = pagesAPiece * pageSize + overlap;
  const int memory = ::open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
  const int pages = ::open("/proc/self/pagemap", O_RDONLY | O_CLOEXEC);
  // Shared, so that what is read is not found a second time where it was read to.
  auto* const window = static_cast<char*>(
      ::mmap(nullptr, space, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  if (memory < 0 || pages < 0 || window == MAP_FAILED) throw std::runtime_error("no memory");
  const auto wasWritten = [](std::uint64_t page) { return (page >> 62U) != 0; };
  std::size_t shown = 0;
  bool enough = false;
  for (const auto& [begin, end] : privateWritableMappings()) {
    for (auto at = begin; at < end && !enough; at += pagesAPiece * pageSize) {
      std::uint64_t entries[pagesAPiece] = {};
      const auto read = ::pread(pages, entries, sizeof entries,
                                static_cast<off_t>(at / pageSize * sizeof *entries));
      if (read > 0 && std::none_of(std::begin(entries), std::end(entries), wasWritten)) continue;
      const auto size = ::pread(memory, window, std::min(space, end - at), static_cast<off_t>(at));
      if (size <= 0) continue;
      shown += static_cast<std::size_t>(size);
      enough = look({window, static_cast<std::size_t>(size)});
    }
  }
  ::munmap(window, space);
  ::close(pages);
  ::close(memory);
  return shown;
}

}  // namespace hlv::testing
