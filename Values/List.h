// Lists of shared objects, and lists that may be missing.
//
// Threading: plain values; any thread.
#pragma once

#include <memory>
#include <optional>
#include <vector>

namespace hlv {

/// Objects in order. An element may be null.
template <class T>
using List = std::vector<std::shared_ptr<T>>;

/// A missing list is not an empty one.
template <class T>
using NullableList = std::optional<List<T>>;

}  // namespace hlv
