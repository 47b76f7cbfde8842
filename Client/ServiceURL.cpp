#include "Client/ServiceURL.h"

#include <algorithm>
#include <boost/url.hpp>

namespace hlv::client {
namespace {

namespace urls = boost::urls;

bool isHost(urls::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char character) {
    return character == '-' || character == '.' || urls::grammar::alnum_chars(character);
  });
}

}  // namespace

std::optional<ServiceURL> ServiceURL::read(const std::string& text) {
  const auto url = urls::parse_absolute_uri(text);
  if (!url || url->scheme_id() != urls::scheme::http || url->has_userinfo() || url->has_query()) {
    return std::nullopt;
  }
  std::string path(url->encoded_path());
  if (path.ends_with('/')) path.pop_back();
  if (!isHost(url->encoded_host()) || (url->has_port() && url->port_number() == 0) ||
      path.find("//") != std::string::npos) {
    return std::nullopt;
  }
  return ServiceURL{std::string(url->encoded_host()),
                    url->has_port() ? std::string(url->port()) : "80", path};
}

std::string percentEncoded(std::string_view text) {
  return urls::encode(text, urls::unreserved_chars);
}

}  // namespace hlv::client
