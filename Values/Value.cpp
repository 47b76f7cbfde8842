#include "Values/Value.h"

#include <algorithm>
#include <cstddef>
#include <new>

namespace hlv {

std::int64_t Value::integerValue() const {
  if (const auto* boolean = std::get_if<bool>(&storage_)) return *boolean ? 1 : 0;
  if (const auto* integer = std::get_if<std::int64_t>(&storage_)) return *integer;
  if (const auto* integer = std::get_if<std::uint64_t>(&storage_)) {
    return static_cast<std::int64_t>(*integer);
  }
  if (const auto* number = std::get_if<double>(&storage_)) {
    // Outside this range the conversion would be undefined; such a number reads as zero.
    constexpr double limit = 9.2e18;
    if (*number > -limit && *number < limit) return static_cast<std::int64_t>(*number);
  }
  return 0;
}

const Value& valueForKey(const Dictionary& dictionary, const NullableString& key) {
  // Nobody destroys it, and it takes nothing from the heap.
  alignas(Value) static std::byte place[sizeof(Value)];
  static const auto& null = *new (place) Value;
  if (!key) return null;
  // Without a copy of the key.
  const auto found = std::find_if(dictionary.begin(), dictionary.end(),
                                  [&](const auto& entry) { return entry.first == *key; });
  return found == dictionary.end() ? null : found->second;
}

}  // namespace hlv
