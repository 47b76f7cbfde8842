// JSON on its way in and out. Private to the services.
//
// Threading: pure functions; any.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/NullableString.h"
#include "Platform/Value.h"

namespace hlv::services {

/// Members keep the order in which they were written.
using Json = nlohmann::ordered_json;

/// Reads an object that a stranger sent. Throws `Refused` for anything else, for nesting deeper
/// than a request needs, and for texts that are long or hold control characters.
Json parsedObject(const std::string& text);
/// Throws `Refused` when `object` has a member beside these. Names none: a member's name may be
/// what nobody should read.
void requireKnownMembers(const Json& object, std::initializer_list<std::string_view> known);

/// The text under `key`; missing for no member and for null. Throws `Refused` for another type.
NullableString textIn(const Json& object, const char* key);
/// The whole number that is all of `text`; missing for anything else.
std::optional<std::int64_t> numberOf(std::string_view text);
/// The text, or missing for null. Throws `Json::exception` for another type.
NullableString textOrMissing(const Json& json);
/// The whole number under `key`; `otherwise` for no member. Throws `Refused` for another type.
std::int64_t integerIn(const Json& object, const char* key, std::int64_t otherwise);
/// The same for true and false, which has to be there.
bool flagIn(const Json& object, const char* key);
/// The object under `key`. Throws `Refused` when there is none.
const Json& objectIn(const Json& object, const char* key);

Json orNull(const NullableString& text);
/// Objects of the platform become null.
Json jsonOf(const Value& value);
Dictionary dictionaryOf(const Json& object);

/// Overwrites every text of `json`.
void wipeTexts(Json& json);

/// What is no UTF-8 is replaced, so that this always succeeds.
std::string textOf(const Json& json);

}  // namespace hlv::services
