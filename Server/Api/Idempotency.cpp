#include "Server/Api/Idempotency.h"

#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "Sandbox/JSON/Json.h"
#include "Sandbox/Store/Identifiers.h"
#include "Sandbox/Store/Settings.h"
#include "Server/Http/HttpError.h"
#include "Values/Wiped.h"

namespace hlv::sandbox::server {
namespace {

constexpr std::int64_t repliesKept = 10'000;
constexpr const char* saltSetting = "kept-replies-salt";

/// Of texts each with its length, so that none can pass for a part of another.
std::string digestOf(std::initializer_list<std::string_view> texts) {
  std::size_t size = 0;
  for (const auto text : texts) size += text.size() + 21;
  std::string whole;
  const Wiped wiped(whole);
  whole.reserve(size);
  for (const auto text : texts) whole.append(std::to_string(text.size())).append(":").append(text);
  std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
  unsigned count = 0;
  if (EVP_Digest(whole.data(), whole.size(), bytes.data(), &count, EVP_sha256(), nullptr) != 1) {
    throw Problem("No digest can be made.");
  }
  // Letters only, so that none looks like a card number.
  std::string digest;
  for (unsigned i = 0; i < count; ++i) {
    digest += static_cast<char>('a' + (bytes[i] >> 4));
    digest += static_cast<char>('a' + (bytes[i] & 15));
  }
  return digest;
}

void requireKey(const std::string& key) {
  constexpr std::size_t longest = 200;
  const bool isPlain = std::all_of(
      key.begin(), key.end(), [](char character) { return character > ' ' && character < 127; });
  if (key.empty() || key.size() > longest || !isPlain) {
    throw HttpError(400, "malformed-idempotency-key", "The idempotency key cannot be read.");
  }
}

}  // namespace

IdempotentRequest::IdempotentRequest(const HttpRequest& request, const std::string& service,
                                     const std::string& salt) {
  const auto given = request.idempotencyKey.value_or("");
  requireKey(given);
  key_ = digestOf({salt, service, given});
  digest_ = digestOf({salt, service, given, request.method, request.target, request.body,
                      request.prefer.value_or("")});
}

std::optional<HttpReply> IdempotentRequest::keptReply(Database& database,
                                                      const std::string& requestID) const {
  auto row = database.query("SELECT request, status, body FROM kept_replies WHERE key = ?", key_);
  if (!row.next()) return std::nullopt;
  if (row.text(0) != digest_) {
    throw HttpError(422, "idempotency-key-reused",
                    "The idempotency key belongs to another request.");
  }
  HttpReply reply{.status = static_cast<int>(row.integer(1)), .body = row.text(2)};
  constexpr int firstError = 400;
  if (reply.status < firstError) return reply;
  auto body = Json::parse(reply.body);
  reply.code = body["error"]["code"];
  body["error"]["request_id"] = requestID;
  reply.body = textOf(body);
  return reply;
}

void IdempotentRequest::keep(Database& database, const HttpReply& reply) const {
  constexpr int firstFailure = 500;
  if (reply.status >= firstFailure) return;
  database.run("INSERT INTO kept_replies (key, request, status, body) VALUES (?, ?, ?, ?)", key_,
               digest_, std::int64_t{reply.status}, reply.body);
  database.run("DELETE FROM kept_replies WHERE number <= ?", database.lastRow() - repliesKept);
}

std::string IdempotentRequest::salt(Database& database) {
  if (const auto known = readSetting(database, saltSetting)) return *known;
  auto made = randomLetters(32);
  writeSetting(database, saltSetting, made);
  return made;
}

}  // namespace hlv::sandbox::server
