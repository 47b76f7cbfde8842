#include "Client/ServiceURL.h"

#include <algorithm>
#include <charconv>

namespace hlv::client {
namespace {

bool isUnreserved(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') ||
         std::string_view("-._~").find(character) != std::string_view::npos;
}

bool isHost(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char character) {
    return isUnreserved(character) && character != '_' && character != '~';
  });
}

bool isPort(std::string_view text) {
  unsigned number = 0;
  const auto* end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, number);
  return parsed.ec == std::errc() && parsed.ptr == end && number > 0 && number <= 65535;
}

bool isPath(std::string_view text) {
  return text.find("//") == std::string_view::npos &&
         std::all_of(text.begin(), text.end(), [](char character) {
           return isUnreserved(character) || character == '/' || character == '%';
         });
}

}  // namespace

std::optional<ServiceURL> ServiceURL::read(const std::string& text) {
  constexpr std::string_view scheme = "http://";
  std::string_view rest = text;
  if (!rest.starts_with(scheme)) return std::nullopt;
  rest.remove_prefix(scheme.size());
  if (rest.ends_with('/')) rest.remove_suffix(1);
  const auto authority = rest.substr(0, rest.find('/'));
  const auto path = rest.substr(authority.size());
  const auto host = authority.substr(0, authority.find(':'));
  const auto port = host.size() == authority.size() ? "80" : authority.substr(host.size() + 1);
  if (!isHost(host) || !isPort(port) || !isPath(path)) return std::nullopt;
  return ServiceURL{std::string(host), std::string(port), std::string(path)};
}

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

}  // namespace hlv::client
