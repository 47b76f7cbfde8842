#include "Server/Api/Idempotency.h"

#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "Sandbox/JSON/Json.h"
#include "Sandbox/Store/KeptReplies.h"
#include "Server/Http/HttpError.h"

namespace hlv::server {
namespace {

using sandbox::Database;
using sandbox::Json;

/// Of texts each with its length, so that none can pass for a part of another.
std::string digestOf(std::initializer_list<std::string_view> texts) {
  const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(),
                                                                        &EVP_MD_CTX_free);
  bool isGood = context && EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) == 1;
  for (const auto text : texts) {
    const auto size = std::to_string(text.size()) + ":";
    isGood = isGood && EVP_DigestUpdate(context.get(), size.data(), size.size()) == 1 &&
             EVP_DigestUpdate(context.get(), text.data(), text.size()) == 1;
  }
  std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
  unsigned count = 0;
  if (!isGood || EVP_DigestFinal_ex(context.get(), bytes.data(), &count) != 1) {
    throw std::runtime_error("No digest can be made.");
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

IdempotentRequest IdempotentRequest::of(const HttpRequest& request, const std::string& service,
                                        const std::string& salt) {
  const auto given = request.idempotencyKey.value_or("");
  requireKey(given);
  IdempotentRequest result;
  result.key_ = digestOf({salt, service, given});
  result.digest_ = digestOf({salt, service, given, request.method, request.target, request.body,
                             request.prefer.value_or("")});
  return result;
}

std::optional<HttpReply> IdempotentRequest::keptReply(Database& database,
                                                      const std::string& requestID) const {
  const auto kept = sandbox::findKeptReply(database, key_);
  if (!kept) return std::nullopt;
  if (kept->request != digest_) {
    throw HttpError(422, "idempotency-key-reused",
                    "The idempotency key belongs to another request.");
  }
  HttpReply reply;
  reply.status = static_cast<int>(kept->status);
  reply.body = kept->body;
  constexpr int firstError = 400;
  if (reply.status < firstError) return reply;
  auto body = Json::parse(reply.body);
  reply.code = body["error"]["code"];
  body["error"]["request_id"] = requestID;
  reply.body = sandbox::textOf(body);
  return reply;
}

void IdempotentRequest::keep(Database& database, const HttpReply& reply) const {
  constexpr int firstFailure = 500;
  if (reply.status >= firstFailure) return;
  sandbox::keepReply(database, key_, {digest_, reply.status, reply.body});
}

}  // namespace hlv::server
