#include "Services/Idempotency.h"

#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "Sandbox/Store/KeptAnswers.h"
#include "Services/Http/Refused.h"

namespace hlv::services {
namespace {

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

std::string targetOf(const HttpRequest& request) {
  std::string target;
  for (const auto& part : request.path) target.append("/").append(part);
  for (const auto& [name, value] : request.query) {
    target.append("&").append(name).append("=").append(value);
  }
  return target;
}

/// One request with a key, until its answer leaves. What the service's call brings within `asOne`
/// is kept, and is what leaves.
class Keeping {
 public:
  Keeping(std::shared_ptr<sandbox::Sandbox> sandbox, std::string key, std::string request,
          std::unique_ptr<KeysInUse::Use> use, Reply reply)
      : sandbox_(std::move(sandbox)),
        key_(std::move(key)),
        request_(std::move(request)),
        use_(std::move(use)),
        reply_(std::move(reply)) {}

  void asOne(const std::function<void()>& serve) {
    auto& kept = sandbox_->keptAnswers();
    kept.asOne([&] {
      isServing_ = true;
      serve();
      isServing_ = false;
      if (isWorthKeeping()) kept.keep(key_, {request_, answer_->status, textOf(answer_->body)});
    });
    isKept_ = isWorthKeeping();
  }

  void hear(HttpAnswer answer) {
    if (isServing_) {
      answer_ = std::move(answer);
      return;
    }
    // Comes first, so that whoever heard the answer finds the key free to ask again with.
    use_.reset();
    reply_(isKept_ ? *answer_ : std::move(answer));
  }

 private:
  bool isWorthKeeping() const {
    constexpr int firstFailure = 500;
    return answer_ && answer_->status < firstFailure;
  }

  const std::shared_ptr<sandbox::Sandbox> sandbox_;
  const std::string key_;
  const std::string request_;
  std::unique_ptr<KeysInUse::Use> use_;
  const Reply reply_;
  bool isServing_ = false;
  bool isKept_ = false;
  std::optional<HttpAnswer> answer_;
};

}  // namespace

Routes::Handler Idempotency::around(Handler handler) const {
  return [service = service_, sandbox = sandbox_, inUse = inUse_, handler = std::move(handler)](
             const HttpRequest& request, const Reply& reply) {
    if (!request.idempotencyKey) return handler(sandbox->hostBehindDoors(), request, reply);
    requireKey(*request.idempotencyKey);
    auto& kept = sandbox->keptAnswers();
    const auto salt = kept.salt();
    const auto key = digestOf({salt, service, *request.idempotencyKey});
    const auto digest =
        digestOf({salt, service, *request.idempotencyKey, targetOf(request), request.body});
    // Comes before the look, so that the first request is under way or has its answer.
    auto use = inUse->begin(key);
    if (const auto known = kept.find(key)) {
      if (known->request != digest) {
        throw Refused{422, "idempotency-key-reused",
                      "The idempotency key belongs to another request."};
      }
      use.reset();
      return reply({static_cast<int>(known->status), Json::parse(known->body)});
    }
    const auto keeping = std::make_shared<Keeping>(sandbox, key, digest, std::move(use), reply);
    const auto host = sandbox->hostBehindDoors(
        [keeping](const std::function<void()>& serve) { keeping->asOne(serve); });
    handler(host, request, [keeping](HttpAnswer answer) { keeping->hear(std::move(answer)); });
  };
}

}  // namespace hlv::services
