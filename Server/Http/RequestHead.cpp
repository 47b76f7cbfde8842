#include "Server/Http/RequestHead.h"

#include <algorithm>
#include <boost/url.hpp>
#include <nlohmann/json.hpp>
#include <string_view>

#include "Server/Http/HttpError.h"

namespace hlv::sandbox::server {
namespace {

namespace beast = boost::beast;
namespace http = beast::http;
namespace urls = boost::urls;

constexpr std::string_view loopbackNames[] = {"127.0.0.1", "localhost", "[::1]", "10.0.2.2"};

[[noreturn]] void rejectAsMalformed(const char* sentence) {
  throw HttpError(400, "malformed-request", sentence);
}

std::string textOf(beast::string_view text) { return {text.data(), text.size()}; }

template <class Name>
NullableString headerOf(const RequestHead& head, Name name) {
  const auto found = head.find(name);
  return found == head.end() ? std::nullopt : NullableString(textOf(found->value()));
}

bool isText(const std::string& text) {
  bool isAscii = true;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20 || byte == 0x7F) return false;
    isAscii = isAscii && byte < 0x80;
  }
  if (isAscii) return true;
  try {
    nlohmann::json(text).dump();
    return true;
  } catch (const nlohmann::json::exception&) {
    return false;
  }
}

std::string decoded(urls::pct_string_view encoded) {
  auto text = encoded.decode();
  if (!isText(text)) rejectAsMalformed("The path cannot be read.");
  return text;
}

/// Whether it is one of the names, in whatever case.
template <class Names>
bool isOneOf(const Names& names, beast::string_view name) {
  return std::any_of(std::begin(names), std::end(names),
                     [&](const auto& each) { return beast::iequals(name, each); });
}

bool isAllowed(const urls::authority_view& authority, const ListenOptions& options) {
  const auto type = authority.host_type();
  const bool isAddress = type == urls::host_type::ipv4 || type == urls::host_type::ipv6;
  const auto name = authority.encoded_host();
  return isOneOf(loopbackNames, name) || isOneOf(options.allowedHosts, name) ||
         (isAddress && options.beyondThisMachine);
}

void checkHost(const RequestHead& head, const ListenOptions& options, const std::string& host) {
  const auto count = head.count(http::field::host);
  if (count > 1 || (count == 0 && head.version() >= 11)) {
    rejectAsMalformed("A request names its host once.");
  }
  if (host.empty() && count == 0) return;
  const auto authority = urls::parse_authority(host);
  if (!authority || authority->has_userinfo()) rejectAsMalformed("The host cannot be read.");
  if (!isAllowed(*authority, options)) {
    throw HttpError(403, "foreign-name", "The service does not go by this name.");
  }
}

/// A page of another site may send requests without being able to read their replies.
void checkOrigin(const RequestHead& head, const ListenOptions& options, const std::string& host) {
  const auto origin = headerOf(head, http::field::origin);
  if (!origin) return;
  const auto url = urls::parse_uri(*origin);
  const bool isOwn = url && url->has_authority() &&
                     (beast::iequals(url->authority().encoded_host_and_port(), host) ||
                      isOneOf(options.allowedHosts, url->encoded_host()));
  if (!isOwn) {
    throw HttpError(403, "foreign-origin", "Pages of other sites cannot use the service.");
  }
}

bool isJson(beast::string_view contentType) {
  return beast::iequals(contentType.substr(0, contentType.find_first_of("; \t")),
                        "application/json");
}

void checkBody(const RequestHead& head) {
  if (head.count(http::field::transfer_encoding) > 0) {
    throw HttpError(411, "length-required", "A request says how long its body is.");
  }
  if (head.count(http::field::content_length) > 1) {
    rejectAsMalformed("The length of the body cannot be read.");
  }
  const auto length = head[http::field::content_length];
  const bool needsBody = head.method() == http::verb::post || head.method() == http::verb::patch;
  const bool hasBody = length.find_first_not_of('0') != beast::string_view::npos;
  if ((needsBody || hasBody) &&
      (head.count(http::field::content_encoding) > 0 || !isJson(head[http::field::content_type]))) {
    throw HttpError(415, "unsupported-media-type", "A body is application/json, and not encoded.");
  }
  const auto expectation = head[http::field::expect];
  if (!expectation.empty() && !beast::iequals(expectation, "100-continue")) {
    throw HttpError(417, "expectation-failed", "The expectation cannot be met.");
  }
}

urls::url_view parsedTarget(const std::string& target) {
  const auto url =
      target.starts_with('/') ? urls::parse_origin_form(target) : urls::parse_uri(target);
  if (!url ||
      (url->has_scheme() && !(url->scheme_id() == urls::scheme::http && url->has_authority())))
    rejectAsMalformed("The path cannot be read.");
  return *url;
}

}  // namespace

void describe(const RequestHead& head, HttpRequest& request) {
  request.isHead = head.method() == http::verb::head;
  request.method = request.isHead ? "GET" : textOf(head.method_string());
  request.target = textOf(head.target());
  request.host = textOf(head[http::field::host]);
}

void readHead(const RequestHead& head, const ListenOptions& options, HttpRequest& request) {
  if (head.target().size() > options.limits.targetBytes) {
    throw HttpError(414, "path-too-long", "The path is too long.");
  }
  const auto url = parsedTarget(request.target);
  if (url.has_authority()) request.host = url.authority().encoded_host_and_port();
  checkHost(head, options, request.host);
  checkOrigin(head, options, request.host);
  checkBody(head);
  for (const auto part : url.encoded_segments()) request.path.push_back(decoded(part));
  if (!request.path.empty() && request.path.back().empty()) request.path.pop_back();
  for (const auto& parameter : url.encoded_params()) {
    request.query.emplace(decoded(parameter.key), decoded(parameter.value));
  }
  request.apiKey = headerOf(head, "X-API-Key");
  request.idempotencyKey = headerOf(head, "Idempotency-Key");
  request.authorization = headerOf(head, http::field::authorization);
  request.prefer = headerOf(head, http::field::prefer);
}

}  // namespace hlv::sandbox::server
