// What strangers send to the services: requests that these describe, with any part disturbed. Each
// is answered as described or let go; what was refused changed nothing; what was created under a
// key is answered the same again; and the card that some requests hold is found nowhere afterwards.
#include <fuzzer/FuzzedDataProvider.h>

#include <sstream>

#include "Services/BackendRecords.h"
#include "Services/Http/ErrorBody.h"
#include "Services/Http/Percent.h"
#include "Services/OpenAPI.h"
#include "Tests/Secrecy/CardDataSearch.h"
#include "Tests/Services/ServicesTest.h"

namespace hlv::services {
namespace {

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

/// By path. A card's code stands first, where no disturbance brings it under another name.
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
};

/// What both services describe.
std::vector<Operation> describedOperations() {
  std::vector<Operation> operations;
  for (const auto document : {backendOpenAPI(), providerOpenAPI()}) {
    const auto paths = Json::parse(document).at("paths");
    for (const auto& [path, methods] : paths.items()) {
      for (const auto& [method, description] : methods.items()) {
        if (method == "parameters") continue;
        operations.push_back({method, path, description.at("responses")});
        for (char& letter : operations.back().method) letter ^= 0x20;
      }
    }
  }
  return operations;
}

class Stranger final : public ServicesTest {
 public:
  Stranger(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

  void TestBody() override {
    serve();
    EXPECT_EQ(sandbox->signIn(email), "");
    while (bytes_.remaining_bytes() > 0) send();
    for (const auto& operation : sandbox->journal().last(1000)) {
      for (const auto& event : operation.events) search(event.what + "\n" + event.result);
    }
    // Whoever holds the store keeps the file from being complete.
    endServices();
    search(contentOf(storePath()) + contentOf(storePath() + ".log"));
  }

 private:
  static void search(const std::string& text) {
    EXPECT_EQ(testing::CardDataSearch("378282246310005", "7391").in(text), std::nullopt);
  }

  /// Who is signed in, and what both sides have for that guest.
  std::string kept() const {
    auto all = textOf(jsonOf(sandbox->host()->currentGuest()));
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

  /// Mostly as it was; otherwise something else, or with something else in it. Digits stay
  /// together, since nobody can know a piece of a card number.
  std::string disturbed(const std::string& text) {
    const auto choice = bytes_.ConsumeIntegralInRange(0, 31);
    if (choice < 30) return text;
    if (choice == 30) return typed();
    const auto splitsDigits = [&](std::size_t at) {
      return at > 0 && at < text.size() && isDigit(text[at - 1]) && isDigit(text[at]);
    };
    auto begin = bytes_.ConsumeIntegralInRange<std::size_t>(0, text.size());
    auto end = bytes_.ConsumeIntegralInRange(begin, std::min(begin + 20, text.size()));
    while (splitsDigits(begin)) --begin;
    while (splitsDigits(end)) ++end;
    return text.substr(0, begin) + typed() + text.substr(end);
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
    const auto body = disturbed(hasBody ? textOf(json) : "");
    const std::string key = bytes_.ConsumeBool() ? "Idempotency-Key: a" : "Accept: */*";
    const auto sentKey = disturbed(key);
    auto request = line + " HTTP/1.1\r\nHost: x\r\n" + sentKey;
    for (const std::string& header :
         {std::string("X-API-Key: key"), std::string("Content-Type: application/json"),
          "Content-Length: " + std::to_string(body.size())}) {
      request += "\r\n" + disturbed(header);
    }
    request += "\r\n\r\n" + body;
    const bool isBackend = operation.path.starts_with("/v1/guests");
    const auto url = isBackend ? services->backendURL() : services->providerURL();
    const auto before = kept();
    const auto heard = testing::say(url, request, true);
    search(heard.text);
    EXPECT_LT(heard.status, 500);
    if (heard.status == 0 || heard.status >= 400) EXPECT_TRUE(kept() == before);
    if (heard.status == 0) return;
    const bool isDescribed = operation.responses.contains(std::to_string(heard.status));
    EXPECT_TRUE(isDescribed || line != usual)
        << operation.method << " " << operation.path << " is answered with " << heard.status;
    if (heard.text.empty()) {
      EXPECT_TRUE(heard.status == 204 || line.starts_with("HEAD")) << heard.status;
      return;
    }
    const auto answer = heard.body();
    EXPECT_EQ(errorIn(answer) && !heard.code().empty(), heard.status >= 400) << heard.status;
    token_ = answer.value("token", token_);
    if (heard.status != 201 || sentKey != "Idempotency-Key: a") return;
    const auto after = kept();
    EXPECT_TRUE(testing::say(url, request, true).text == heard.text && kept() == after);
  }

  FuzzedDataProvider bytes_;
  std::string token_ = "tok_x";
};

}  // namespace
}  // namespace hlv::services

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  GTEST_FLAG_SET(break_on_failure, true);
  hlv::services::Stranger(data, size).TestBody();
  return 0;
}
