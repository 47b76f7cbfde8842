#include "Services/Idempotency.h"

#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <initializer_list>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "Sandbox/Store/KeptAnswers.h"
#include "Services/Http/Refused.h"

namespace hlv::services {
namespace {

using sandbox::KeptAnswers;

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
    throw Refused{400, "malformed-idempotency-key", "The idempotency key cannot be read."};
  }
}

/// One claim on a key, until its answer is kept. Without one, the key is free again.
class Claimed {
 public:
  Claimed(std::shared_ptr<sandbox::Sandbox> sandbox, std::string key)
      : sandbox_(std::move(sandbox)), key_(std::move(key)) {}
  ~Claimed() {
    if (!isSettled_.test_and_set()) release();
  }
  Claimed(const Claimed&) = delete;
  Claimed& operator=(const Claimed&) = delete;

  /// Comes before the answer leaves, so that whoever heard it finds the key settled.
  void settle(const HttpAnswer& answer) {
    constexpr int firstFailure = 500;
    if (isSettled_.test_and_set()) return;
    if (answer.status >= firstFailure) return release();
    try {
      sandbox_->keptAnswers().keep(key_, {answer.status, textOf(answer.body)});
    } catch (const std::runtime_error&) {
      // As below.
    }
  }

 private:
  void release() {
    try {
      sandbox_->keptAnswers().release(key_);
    } catch (const std::runtime_error&) {
      // The key then stays claimed, and a second request learns that the first has no answer.
    }
  }

  const std::shared_ptr<sandbox::Sandbox> sandbox_;
  const std::string key_;
  std::atomic_flag isSettled_;
};

}  // namespace

Routes::Handler Idempotency::around(Routes::Handler handler) const {
  return [service = service_, sandbox = sandbox_, handler = std::move(handler)](
             const HttpRequest& request, const Reply& reply) {
    if (!request.idempotencyKey) return handler(request, reply);
    requireKey(*request.idempotencyKey);
    auto& kept = sandbox->keptAnswers();
    const auto salt = kept.salt();
    const auto key = digestOf({salt, service, *request.idempotencyKey});
    std::string target;
    for (const auto& part : request.path) target.append("/").append(part);
    for (const auto& [name, value] : request.query) {
      target.append("&").append(name).append("=").append(value);
    }
    const auto claim =
        kept.claim(key, digestOf({salt, service, *request.idempotencyKey, target, request.body}));
    switch (claim.state) {
      case KeptAnswers::State::answered:
        return reply({static_cast<int>(claim.answer->status), Json::parse(claim.answer->body)});
      case KeptAnswers::State::differs:
        throw Refused{422, "idempotency-key-reused",
                      "The idempotency key belongs to another request."};
      case KeptAnswers::State::unfinished:
        throw Refused{409, "idempotency-key-in-use",
                      "The first request with the idempotency key has no answer yet."};
      case KeptAnswers::State::claimed:
        break;
    }
    handler(request, [claimed = std::make_shared<Claimed>(sandbox, key), reply](HttpAnswer answer) {
      claimed->settle(answer);
      reply(std::move(answer));
    });
  };
}

}  // namespace hlv::services
