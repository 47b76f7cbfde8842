#include "Services/Http/Percent.h"

#include <charconv>

#include "Services/Json.h"

namespace hlv::services {
namespace {

bool isUnreserved(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') ||
         std::string_view("-._~").find(character) != std::string_view::npos;
}

bool isText(const std::string& text) {
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20 || byte == 0x7F) return false;
  }
  try {
    Json(text).dump();
    return true;
  } catch (const Json::exception&) {
    return false;
  }
}

}  // namespace

std::string percentEncoded(std::string_view text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string encoded;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (isUnreserved(character)) {
      encoded += character;
    } else {
      encoded += {'%', digits[byte >> 4], digits[byte & 15]};
    }
  }
  return encoded;
}

NullableString percentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '%') {
      decoded += text[at];
      continue;
    }
    const auto digits = text.substr(at + 1, 2);
    unsigned byte = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    if (digits.size() < 2 || read.ptr != digits.data() + digits.size()) return std::nullopt;
    decoded += static_cast<char>(byte);
    at += 2;
  }
  return isText(decoded) ? NullableString(std::move(decoded)) : std::nullopt;
}

}  // namespace hlv::services
