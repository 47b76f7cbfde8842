// Dictionaries of plain values: notification user infos and JSON bodies.
//
// Threading: plain values; any thread.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "Values/Export.h"
#include "Values/NullableString.h"
#include "Values/Object.h"
#include "Values/Text.h"

namespace hlv {

class Value;
using Array = std::vector<Value>;
using Dictionary = std::map<Text, Value>;

/// The integers, without booleans and characters.
template <class T>
concept IntegralNumber = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> &&
                         !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> &&
                         !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

/// A null, a boolean, a number, a string, an array, a dictionary, or an object of the platform that
/// the kit only passes through. Copies share nothing but such objects.
///
/// What is made into a value stays exactly what it is: a conversion that could lose something, or
/// that would read a pointer as a boolean or a character as a number, does not compile.
class HLV_EXPORT Value {
 public:
  /// An integer is unsigned only where it is beyond the signed ones.
  using Storage = std::variant<std::monostate, bool, std::int64_t, double, std::string, Array,
                               Dictionary, std::shared_ptr<const Object>, std::uint64_t>;

  Value() = default;
  Value(std::nullptr_t) {}
  template <std::same_as<bool> Boolean>
  Value(Boolean value) : storage_(value) {}
  template <IntegralNumber Number>
  Value(Number value) : storage_(static_cast<std::int64_t>(value)) {
    if constexpr (std::unsigned_integral<Number>) {
      if (std::get<std::int64_t>(storage_) < 0) storage_ = std::uint64_t{value};
    }
  }
  template <std::floating_point Number>
  requires(sizeof(Number) <= sizeof(double)) Value(Number value) : storage_(double{value}) {}
  Value(const char* value) : Value(NullableString(value)) {}
  Value(std::string value) : storage_(std::move(value)) {}
  /// A missing string becomes the null value.
  Value(NullableString value) {
    if (value) storage_.emplace<std::string>(std::move(*value));
  }
  Value(Array value) : storage_(std::move(value)) {}
  Value(Dictionary value) : storage_(std::move(value)) {}
  Value(std::shared_ptr<const Object> value) {
    if (value) storage_ = std::move(value);
  }

  bool isNull() const { return std::holds_alternative<std::monostate>(storage_); }

  /// Reads a number or a boolean; everything else is zero. An integer beyond the signed ones keeps
  /// its bits.
  std::int64_t integerValue() const;
  bool boolValue() const { return integerValue() != 0 || fractionIsTrue(); }

  /// Null when the value is of another kind.
  const std::string* string() const { return std::get_if<std::string>(&storage_); }
  const Array* array() const { return std::get_if<Array>(&storage_); }
  const Dictionary* dictionary() const { return std::get_if<Dictionary>(&storage_); }
  const Storage& storage() const { return storage_; }

  bool operator==(const Value& other) const = default;

 private:
  bool fractionIsTrue() const {
    const auto* number = std::get_if<double>(&storage_);
    return number && *number != 0;
  }

  Storage storage_;
};

/// The value under `key`, or the null value.
HLV_EXPORT const Value& valueForKey(const Dictionary& dictionary, const NullableString& key);

}  // namespace hlv
