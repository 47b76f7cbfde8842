#include "Services/Remote/ServiceURL.h"

#include <charconv>
#include <string_view>

namespace hlv::services {

std::optional<ServiceURL> ServiceURL::read(const std::string& text) {
  constexpr std::string_view scheme = "http://";
  std::string_view rest = text;
  if (!rest.starts_with(scheme)) return std::nullopt;
  rest.remove_prefix(scheme.size());
  if (rest.ends_with('/')) rest.remove_suffix(1);
  const auto host = rest.substr(0, rest.find(':'));
  const auto port = host.size() == rest.size() ? "80" : rest.substr(host.size() + 1);
  constexpr std::string_view hostCharacters =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-.";
  if (host.empty() || host.find_first_not_of(hostCharacters) != std::string_view::npos) {
    return std::nullopt;
  }
  unsigned number = 0;
  const auto* end = port.data() + port.size();
  const auto parsed = std::from_chars(port.data(), end, number);
  if (parsed.ec != std::errc() || parsed.ptr != end || number == 0 || number > 65535) {
    return std::nullopt;
  }
  return ServiceURL{std::string(host), std::string(port)};
}

}  // namespace hlv::services
