// What anybody may send to backend and provider: requests that these describe, with any part
// disturbed. Each gets a reply as described or none; what was rejected changed nothing; what was
// created under a key gets the same reply again; and the card that some requests hold is found
// nowhere afterwards.
#include <fuzzer/FuzzedDataProvider.h>

#include <sstream>

#include "Client/ServiceURL.h"
#include "Server/Api/OpenAPI.h"
#include "Tests/Secrecy/CardDataSearch.h"
#include "Tests/Server/ServerTest.h"

namespace hlv::server {
namespace {

using client::percentEncoded;

/// Each has a meaning somewhere.
const auto words = [] {
  std::istringstream listed(
      "|378282246310005|a 378282246310005@b|guest@example.com|a@b|private|null|0|-5|65|[[[[[[[[|{}"
      "|\"|\\u0000|%00|%ff|%zz|/|&| |\r\nX:|\r\n\r\n{|HEAD|OPTIONS|Transfer-Encoding: chunked"
      "|Expect: 100-continue|Expect: much|Range: bytes=0-0|Content-Encoding: gzip"
      "|Accept-Encoding: gzip|Content-Length: 5");
  std::vector<std::string> all;
  for (std::string word; std::getline(listed, word, '|');) all.push_back(word);
  return all;
}();

/// By path. A card's code stands first, where no interference brings it under another name.
const std::map<std::string, std::string> bodies = {
    {"/v1/guests/{email}", R"({"payment_token": "tok_x"})"},
    {"/v1/guests/{email}/cards", R"({"provider": 0, "credit_card": {
       "last_four_digits": "0005", "brand": "visa", "use_case": "default", "card_holder": "Erika",
       "external_identifier": "ins_x", "expiry_month": "12", "expiry_year": "2035",
       "billing_address": {"city": "Berlin", "zip": "10115"}}})"},
    {"/v1/guests/{email}/cards/{id}", R"({"city": "Berlin", "zip": "10115"})"},
    {"/v1/users", R"({"credit_card": {
       "security_code": "7391", "number": "378282246310005", "expiry_month": "12",
       "expiry_year": "2035", "card_holder": "378282246310005"},
       "email": "guest@example.com", "use_case": "default"})"},
    {"/v1/users/{token}/instruments", R"({"credit_card": {
       "security_code": "7391", "number": "378282246310005", "expiry_month": "12",
       "expiry_year": "2035", "card_holder": "Erika"}})"}};

struct Operation {
  std::string method;
  std::string path;
  Json responses;
  bool isBackends;
};

/// What both services describe.
std::vector<Operation> describedOperations() {
  std::vector<Operation> operations;
  for (const bool isBackends : {true, false}) {
    const auto paths = Json::parse(openAPI(isBackends ? "backend" : "provider")).at("paths");
    for (const auto& [path, methods] : paths.items()) {
      for (const auto& [method, description] : methods.items()) {
        if (method == "parameters") continue;
        operations.push_back({method, path, description.at("responses"), isBackends});
        for (char& letter : operations.back().method) letter ^= 0x20;
      }
    }
  }
  return operations;
}

class Sender final : public ServerTest {
 public:
  Sender(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

  void TestBody() override {
    // What does not arrive whole is soon given up.
    serve([](ServerOptions& wanted) {
      auto& limits = wanted.listening.limits;
      limits.headTime = limits.bodyTime = limits.idleTime = std::chrono::milliseconds(100);
    });
    while (bytes_.remaining_bytes() > 0) send();
    for (const auto& operation : sandbox->journal().last(1000)) {
      for (const auto& event : operation.events) search(event.what + "\n" + event.result);
    }
    // Whoever holds the store keeps the file from being complete.
    server.reset();
    stop();
    search(contentOf(storePath()) + contentOf(storePath() + ".log"));
  }

 private:
  static void search(const std::string& text) {
    EXPECT_EQ(testing::CardDataSearch("378282246310005", "7391").in(text), std::nullopt);
  }

  /// What both sides have for the guest.
  std::string kept() const {
    auto all = askBackend("GET " + guestPath()).body;
    for (const auto& each : sandbox->providerInstruments()) {
      all += each.identifier.value_or("-") + each.useCase;
    }
    return all;
  }

  template <class Item>
  const Item& oneOf(const std::vector<Item>& items) {
    return items[bytes_.ConsumeIntegralInRange<std::size_t>(0, items.size() - 1)];
  }

  /// Anything, but for digits: those that are sent are known, so that none look like the card's.
  std::string typed() {
    if (bytes_.ConsumeBool()) return oneOf(words);
    // As long as no path, or no body, may be.
    if (bytes_.ConsumeBool()) return std::string(bytes_.ConsumeBool() ? 1100 : 66'000, 'x');
    auto text = bytes_.ConsumeRandomLengthString(16);
    for (char& character : text) character ^= isDigit(character) ? 0x40 : 0;
    return text;
  }

  static bool isDigit(char character) { return character >= '0' && character <= '9'; }

  /// Mostly as it was; otherwise something else, or with something else before or behind it. Digits
  /// stay together, since nobody can know a piece of a card number.
  std::string disturbed(const std::string& text) {
    switch (bytes_.ConsumeIntegralInRange(0, 31)) {
      case 29:
        return typed();
      case 30:
        return typed() + text;
      case 31:
        return text + typed();
      default:
        return text;
    }
  }

  void disturb(Json& json) {
    if (json.is_structured()) {
      for (auto& item : json) disturb(item);
    } else if (json != "7391") {
      if (json.is_string()) json = disturbed(json);
      const std::vector<Json> others = {nullptr, 1, -1.5, true, Json::array(), {{"a", {"b"}}}};
      if (bytes_.ConsumeIntegralInRange(0, 15) == 15) json = oneOf(others);
    }
  }

  std::string targetAt(std::string path) {
    const auto cards = sandbox->backendCards();
    const auto instruments = sandbox->providerInstruments();
    const std::pair<std::string, std::string> names[] = {
        {"{email}", email},
        {"{token}", token_},
        {"{id}", cards.empty() ? "none" : cards.back().halvoID},
        {"{identifier}", instruments.empty() ? "none" : *instruments.back().identifier}};
    for (const auto& [name, value] : names) {
      const auto at = path.find(name);
      if (at != path.npos) path.replace(at, name.size(), percentEncoded(disturbed(value)));
    }
    const bool hasUseCase = path.find("/instruments") != path.npos;
    return hasUseCase ? path + "?use_case=" + percentEncoded(disturbed("default")) : path;
  }

  void send() {
    static const auto operations = describedOperations();
    const auto& operation = oneOf(operations);
    const auto usual = operation.method + " " + targetAt(operation.path);
    const auto line = disturbed(usual);
    Json json;
    if (const auto found = bodies.find(operation.path); found != bodies.end()) {
      json = Json::parse(found->second);
      disturb(json);
    }
    const bool hasBody = operation.method == "POST" || operation.method == "PATCH";
    const auto body =
        disturbed(hasBody ? json.dump(-1, ' ', false, Json::error_handler_t::replace) : "");
    const std::string key = bytes_.ConsumeBool() ? "Idempotency-Key: a" : "Accept: */*";
    const auto sentKey = disturbed(key);
    auto request = line + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + sentKey;
    for (const std::string& header :
         {std::string("X-API-Key: key"), std::string("Content-Type: application/json"),
          "Content-Length: " + std::to_string(body.size())}) {
      request += "\r\n" + disturbed(header);
    }
    request += "\r\n\r\n" + body;
    const auto port = portOf(operation.isBackends ? server->backendURL() : server->providerURL());
    const bool isHead = line.starts_with("HEAD");
    const auto before = kept();
    const auto reply = replyTo(port, request, isHead);
    search(reply.head + reply.body);
    EXPECT_LT(reply.status, 500);
    if (reply.status == 0 || reply.status >= 400) EXPECT_TRUE(kept() == before);
    if (reply.status == 0) return;
    const auto status = std::to_string(reply.status);
    const bool isDescribed = operation.responses.contains(status) ||
                             operation.responses.contains(status.substr(0, 1) + "XX");
    EXPECT_TRUE(isDescribed || line != usual)
        << operation.method << " " << operation.path << " has a reply " << reply.status;
    if (reply.body.empty()) {
      EXPECT_TRUE(reply.status == 204 || isHead) << reply.status;
      return;
    }
    EXPECT_EQ(!reply.code().empty(), reply.status >= 400) << reply.status;
    token_ = bodyOf(reply).value("token", token_);
    if (reply.status != 201 || sentKey != "Idempotency-Key: a") return;
    const auto after = kept();
    EXPECT_TRUE(replyTo(port, request, isHead).body == reply.body && kept() == after);
  }

  static Response replyTo(int port, const std::string& request, bool isHead) {
    RawClient client(port);
    auto reply = client.send(request).receive(isHead);
    // The leave to send a body, for which a request may ask, is no reply.
    if (reply.status == 100) reply = client.receive(isHead);
    return reply;
  }

  FuzzedDataProvider bytes_;
  std::string token_ = "tok_x";
};

}  // namespace
}  // namespace hlv::server

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  GTEST_FLAG_SET(break_on_failure, true);
  hlv::server::Sender(data, size).TestBody();
  return 0;
}
