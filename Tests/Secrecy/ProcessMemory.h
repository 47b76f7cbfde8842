// The memory of the running process, as a text to search.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace hlv::testing {

/// Shows `look` every private page that the process may write and has written: heap, stacks and
/// data, in pieces that overlap, until it has seen enough. Returns how many bytes that were.
///
/// Left out are mappings that are marked as not worth dumping, which are the sanitizers' own books.
/// Threading: no other thread runs.
std::size_t showProcessMemory(const std::function<bool(std::string_view bytes)>& look);

}  // namespace hlv::testing
