#include "Sandbox/JSON/Json.h"

#include <algorithm>
#include <charconv>
#include <type_traits>

#include "Values/Wiped.h"

template class nlohmann::basic_json<nlohmann::ordered_map>;

namespace hlv::sandbox {
namespace {

constexpr int deepestRequest = 6;
constexpr std::size_t longestText = 1024;

bool isControl(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 || byte == 0x7F;
}

void requirePlain(const std::string& text) {
  if (text.size() > longestText || std::any_of(text.begin(), text.end(), isControl)) {
    throw InvalidRecord{"unreadable-text", "A text is too long, or holds control characters."};
  }
}

void requirePlainTexts(const Json& json) {
  if (const auto* text = json.get_ptr<const std::string*>()) requirePlain(*text);
  for (const auto& [key, item] : json.items()) {
    if (json.is_object()) requirePlain(key);
    if (json.is_structured()) requirePlainTexts(item);
  }
}

Value valueOf(const Json& json) {
  switch (json.type()) {
    case Json::value_t::boolean:
      return json.get<bool>();
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
      return json.get<std::int64_t>();
    case Json::value_t::number_float:
      return json.get<double>();
    case Json::value_t::string:
      return json.get<std::string>();
    case Json::value_t::object:
      return dictionaryOf(json);
    case Json::value_t::array: {
      Array items;
      for (const auto& item : json) items.push_back(valueOf(item));
      return items;
    }
    default:
      return {};
  }
}

/// Null when there is none.
const Json* memberOf(const Json& object, const char* key) {
  const auto found = object.find(key);
  return found == object.end() ? nullptr : &*found;
}

[[noreturn]] void rejectType(const char* key, const char* what) {
  throw InvalidRecord{"wrong-type", "The member '" + std::string(key) + "' is " + what + "."};
}

}  // namespace

Json parsed(const std::string& text, int deepest) {
  bool isTooDeep = false;
  const auto look = [&](int depth, Json::parse_event_t, Json&) {
    isTooDeep = isTooDeep || depth > deepest;
    return !isTooDeep;
  };
  auto json = Json::parse(text, look, false);
  if (isTooDeep) throw InvalidRecord{"malformed-json", "The body is nested too deeply."};
  if (json.is_discarded()) throw InvalidRecord{"malformed-json", "The body is no JSON."};
  return json;
}

Json parsedObject(const std::string& text) {
  auto json = parsed(text, deepestRequest);
  if (!json.is_object()) throw InvalidRecord{"wrong-type", "The body is no JSON object."};
  requirePlainTexts(json);
  return json;
}

void requireKnownMembers(const Json& object, std::initializer_list<std::string_view> known) {
  for (const auto& [key, value] : object.items()) {
    if (std::find(known.begin(), known.end(), key) == known.end()) {
      throw InvalidRecord{"unknown-member", "The body holds a member that is not known here."};
    }
  }
}

NullableString textIn(const Json& object, const char* key) {
  const auto* member = memberOf(object, key);
  return member && !member->is_null() ? NullableString(requiredTextIn(object, key)) : std::nullopt;
}

std::string requiredTextIn(const Json& object, const char* key) {
  const auto* member = memberOf(object, key);
  if (!member || !member->is_string()) rejectType(key, "no text");
  return member->get<std::string>();
}

std::optional<std::int64_t> integerIn(const Json& object, const char* key) {
  return memberOf(object, key) ? std::optional(requiredIntegerIn(object, key)) : std::nullopt;
}

std::int64_t requiredIntegerIn(const Json& object, const char* key) {
  const auto* member = memberOf(object, key);
  if (!member || !member->is_number_integer() ||
      (member->is_number_unsigned() && member->get<std::uint64_t>() > INT64_MAX)) {
    rejectType(key, "no whole number");
  }
  return member->get<std::int64_t>();
}

std::optional<bool> flagIn(const Json& object, const char* key) {
  return memberOf(object, key) ? std::optional(requiredFlagIn(object, key)) : std::nullopt;
}

bool requiredFlagIn(const Json& object, const char* key) {
  const auto* member = memberOf(object, key);
  if (!member || !member->is_boolean()) rejectType(key, "neither true nor false");
  return member->get<bool>();
}

const Json& objectIn(const Json& object, const char* key) {
  const auto* member = memberOf(object, key);
  if (!member || !member->is_object()) rejectType(key, "no object");
  return *member;
}

const Json::array_t& listIn(const Json& object, const char* key) {
  const auto* member = memberOf(object, key);
  if (!member || !member->is_array()) rejectType(key, "no list");
  return member->get_ref<const Json::array_t&>();
}

NullableString nullableTextIn(const Json& object, const char* key) {
  const auto* member = memberOf(object, key);
  return member && member->is_null() ? std::nullopt : NullableString(requiredTextIn(object, key));
}

const Json::array_t* nullableListIn(const Json& object, const char* key) {
  const auto* member = memberOf(object, key);
  return member && member->is_null() ? nullptr : &listIn(object, key);
}

std::optional<std::int64_t> numberOf(std::string_view text) {
  std::int64_t number = 0;
  const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (problem != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

Json orNull(const NullableString& text) { return text ? Json(*text) : Json(); }

Json jsonOf(const Value& value) {
  return std::visit(
      [](const auto& held) -> Json {
        using Held = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<Held, Dictionary>) {
          auto object = Json::object();
          for (const auto& [key, item] : held) object[key] = jsonOf(item);
          return object;
        } else if constexpr (std::is_same_v<Held, Array>) {
          auto array = Json::array();
          for (const auto& item : held) array.push_back(jsonOf(item));
          return array;
        } else if constexpr (std::is_same_v<Held, std::monostate> ||
                             std::is_same_v<Held, std::shared_ptr<const Object>>) {
          return nullptr;
        } else {
          return held;
        }
      },
      value.storage());
}

Dictionary dictionaryOf(const Json& object) {
  Dictionary dictionary;
  for (const auto& [key, value] : object.items()) dictionary.emplace(key, valueOf(value));
  return dictionary;
}

void wipeTexts(Json& json) {
  if (auto* text = json.get_ptr<std::string*>()) wipe(*text);
  if (!json.is_structured()) return;
  for (auto& item : json) wipeTexts(item);
}

std::string textOf(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace hlv::sandbox
