// Dictionaries of plain values: notification user infos and JSON bodies.
//
// Threading: plain values; any thread.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "Platform/Export.h"
#include "Platform/NullableString.h"
#include "Platform/Object.h"

namespace hlv {

class Value;
using Array = std::vector<Value>;
using Dictionary = std::map<std::string, Value>;

/// A null, a boolean, a number, a string, an array, a dictionary, or an object of the platform that
/// the kit only passes through. Copies share nothing but such objects.
class HLV_EXPORT Value {
 public:
  using Storage = std::variant<std::monostate, bool, std::int64_t, double, std::string, Array,
                               Dictionary, std::shared_ptr<const Object>>;

  Value() = default;
  Value(bool value) : storage_(value) {}
  Value(int value) : storage_(std::int64_t{value}) {}
  Value(std::int64_t value) : storage_(value) {}
  Value(double value) : storage_(value) {}
  Value(const char* value) : storage_(std::string(value)) {}
  Value(std::string value) : storage_(std::move(value)) {}
  /// A missing string becomes the null value.
  Value(const NullableString& value) {
    if (value) storage_ = *value;
  }
  Value(Array value) : storage_(std::move(value)) {}
  Value(Dictionary value) : storage_(std::move(value)) {}
  Value(std::shared_ptr<const Object> value) {
    if (value) storage_ = std::move(value);
  }

  bool isNull() const { return std::holds_alternative<std::monostate>(storage_); }

  /// Reads a number or a boolean; everything else is zero.
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
