// JSON of the records that services exchange.
//
// Threading: pure functions; any. Readers throw `InvalidRecord`.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "Values/NullableString.h"
#include "Values/Problem.h"
#include "Values/Value.h"

// Compiled once, in Json.cpp.
extern template class nlohmann::basic_json<nlohmann::ordered_map>;

namespace hlv::sandbox {

/// What a reader of records throws. The sentence holds nothing of what was read.
///
/// Threading: immutable; any.
class InvalidRecord : public Problem {
 public:
  InvalidRecord(std::string code, const std::string& sentence)
      : Problem(sentence), code_(std::move(code)) {}

  /// Stable, for programs to compare: "malformed-json", "wrong-type", "unknown-member" or
  /// "unreadable-text".
  const std::string& code() const { return code_; }

 private:
  std::string code_;
};

/// Members keep the order in which they were written.
using Json = nlohmann::ordered_json;

/// Rejects what is no JSON, and what is nested deeper.
Json parsed(const std::string& text, int deepest);
/// Reads an object from a request. Rejects anything else, nesting deeper than a request needs, and
/// texts that are long or hold control characters.
Json parsedObject(const std::string& text);
/// Rejects `object` when it has a member beside these. Names none: a member's name may be secret.
void requireKnownMembers(const Json& object, std::initializer_list<std::string_view> known);

// A member of an object. The first of each pair takes no member, and for a text null, for none.

NullableString textIn(const Json& object, const char* key);
std::string requiredTextIn(const Json& object, const char* key);
std::optional<std::int64_t> integerIn(const Json& object, const char* key);
std::int64_t requiredIntegerIn(const Json& object, const char* key);
std::optional<bool> flagIn(const Json& object, const char* key);
bool requiredFlagIn(const Json& object, const char* key);
const Json& objectIn(const Json& object, const char* key);
const Json::array_t& listIn(const Json& object, const char* key);

// The member has to be there, and may be null: what a service leaves out on purpose.

NullableString nullableTextIn(const Json& object, const char* key);
const Json::array_t* nullableListIn(const Json& object, const char* key);

/// The whole number that is all of `text`; missing for anything else.
std::optional<std::int64_t> numberOf(std::string_view text);

/// Each record as its `jsonOf` writes it.
template <class Record>
Json listOf(const std::vector<Record>& records) {
  auto list = Json::array();
  for (const auto& record : records) list.push_back(jsonOf(record));
  return list;
}
/// Each member of a list as `read` reads it.
template <class Read>
auto recordsIn(const Json::array_t& list, Read read) {
  std::vector<std::invoke_result_t<Read, const Json&>> records;
  for (const auto& item : list) records.push_back(read(item));
  return records;
}

Json orNull(const NullableString& text);
/// Objects of the platform become null.
Json jsonOf(const Value& value);
Dictionary dictionaryOf(const Json& object);

/// Overwrites every text of `json`.
void wipeTexts(Json& json);

/// What is no UTF-8 is replaced, so that this always succeeds.
std::string textOf(const Json& json);

}  // namespace hlv::sandbox
