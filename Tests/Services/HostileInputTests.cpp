// What strangers may send.
#include "Tests/Services/ServicesTest.h"

namespace hlv::services {
namespace {

const std::string PAN = "4111111111111111";

/// A body like the one that the kit writes.
testing::Json newCard() {
  return {{"credit_card",
           {{"last_four_digits", "1111"},
            {"brand", "visa"},
            {"use_case", "default"},
            {"external_identifier", "ins_x"},
            {"card_holder", "Erika Mustermann"},
            {"expiry_month", "12"},
            {"expiry_year", "2035"},
            {"billing_address", {{"city", "Berlin"}}},
            {"plv_token", "tok_x"}}},
          {"provider", 0}};
}

struct Row {
  std::string request;
  std::string body;
  int status;
  std::string code;
  std::string headers = {};
};

class HostileInput : public ServicesTest {
 protected:
  HostileInput() {
    serveAndConnect();
    add("visa");
    ID_ = sandbox->backendCards().at(0).halvoID;
    token_ = guest->paylevenToken().value();
  }

  /// Everything that both services keep.
  std::string kept() const {
    std::string all = ask(services->backendURL(), "GET " + guestPath()).text;
    for (const auto& instrument : sandbox->providerInstruments()) {
      all += instrument.identifier.value_or("-") + instrument.useCase;
    }
    return all + sandbox->signedInEmail().value_or("-");
  }

  void refuses(const std::string& url, const std::vector<Row>& rows) {
    const auto before = kept();
    for (const auto& row : rows) {
      const auto heard = ask(url, row.request, row.body, row.headers);
      const auto shown = row.request.substr(0, 60) + " " + row.body.substr(0, 60);
      EXPECT_EQ(heard.status, row.status) << shown;
      EXPECT_EQ(heard.code(), row.code) << shown;
      EXPECT_NE(heard.head.find("X-Request-Id: req_"), std::string::npos) << shown;
      EXPECT_EQ(heard.text.find(PAN), std::string::npos) << "a number came back";
    }
    EXPECT_EQ(kept(), before);
  }

  std::string ID_;
  std::string token_;
};

std::string changed(const std::function<void(testing::Json&)>& change) {
  auto body = newCard();
  change(body);
  return body.dump();
}

TEST_F(HostileInput, TheBackendRefusesWhatItCannotTakeAndChangesNothing) {
  const auto cards = "POST " + guestPath() + "/cards";
  const auto card = guestPath() + "/cards/" + ID_;
  const auto in = [](const char* key, testing::Json value) {
    return changed([&](testing::Json& body) { body["credit_card"][key] = value; });
  };
  std::vector<Row> rows = {
      {cards, "", 415, "unsupported-media-type"},
      {cards, "{", 400, "malformed-json"},
      {cards, "{\"a\": \"\xff\"}", 400, "malformed-json"},
      {cards, std::string(60'000, '['), 400, "malformed-json"},
      {cards, "{\"a\": 1e999}", 400, "malformed-json"},
      {cards, "[]", 422, "wrong-type"},
      {cards, "{}", 422, "wrong-type"},
      {cards, "{\"credit_card\": {}, \"provider\": 0}", 400, "invalid-request"},
      {cards, "{\"credit_card\": 1, \"provider\": 0}", 422, "wrong-type"},
      {cards, changed([](auto& body) { body["provider"] = "0"; }), 422, "wrong-type"},
      {cards, changed([](auto& body) { body["provider"] = 1; }), 400, "invalid-request"},
      {cards, changed([](auto& body) { body.erase("provider"); }), 422, "wrong-type"},
      {cards, changed([](auto& body) { body["pan"] = 1; }), 422, "unknown-member"},
      {cards, in("cvv", "123"), 422, "unknown-member"},
      {cards, in("brand", nullptr), 422, "wrong-type"},
      {cards, in("brand", ""), 400, "invalid-request"},
      {cards, in("last_four_digits", "11a1"), 400, "invalid-request"},
      {cards, in("use_case", "theirs"), 400, "invalid-request"},
      {cards, in("card_holder", "no " + PAN), 422, "card-number-refused"},
      {cards, in("external_identifier", "4111 1111 1111 1111"), 422, "card-number-refused"},
      {cards, in("card_holder", std::string("a\0b", 3)), 422, "unreadable-text"},
      {cards, in("card_holder", std::string(2'000, 'a')), 422, "unreadable-text"},
      {cards, in("billing_address", "Berlin"), 422, "wrong-type"},
      {cards, in("billing_address", {{"city", 1}}), 422, "wrong-type"},
      {cards, in("billing_address", {{"planet", "x"}}), 422, "unknown-member"},
      {cards, std::string(70'000, 'a'), 413, "too-large"},
      {"POST /v1/guests/other@example.com/cards", newCard().dump(), 403, "foreign-guest"},
      {"PATCH " + card, "{\"city\": null}", 422, "wrong-type"},
      {"PATCH " + card, "{\"city\": \"" + PAN + "\"}", 422, "card-number-refused"},
      {"PATCH " + guestPath() + "/cards/none", "{}", 404, "unknown-card"},
      {"PATCH " + guestPath(), "{\"payment_token\": 1}", 422, "wrong-type"},
      {"PATCH " + guestPath(), "{\"payment_token\": null}", 400, "invalid-request"},
      {"PATCH " + guestPath(), "{\"payment_token\": \"" + PAN + "\"}", 422, "card-number-refused"},
      {"PATCH /v1/guests/other@example.com", "{\"payment_token\": \"t\"}", 403, "foreign-guest"},
      {"DELETE " + guestPath() + "/cards/" + PAN, "", 404, "unknown-card"},
      {"DELETE " + guestPath() + "/cards/%27%20OR%201=1", "", 404, "unknown-card"},
      {"DELETE " + guestPath(), "", 405, "method-not-allowed"},
      {"GET /v1/guests/other@example.com", "", 403, "foreign-guest"},
      {"PUT /v1/guests/nobody", "", 400, "invalid-request"},
      {"PUT /v1/guests/" + PAN + "@example.com", "", 400, "invalid-request"},
      {"PUT /v1/guests/a%00@example.com", "", 400, "malformed-request"},
      {"PUT /v1/guests/%ff@example.com", "", 400, "malformed-request"},
      {"PUT /v1/guests/%4", "", 400, "malformed-request"},
      {"PUT /v1/guests/%zz@b", "", 400, "malformed-request"},
      {"PUT /v1/guests/a@b/../c@d", "", 404, "no-such-resource"},
      {"PUT /v1/guests//", "", 404, "no-such-resource"},
      {"GET /" + std::string(2'000, 'a'), "", 414, "path-too-long"},
      {"GET /" + std::string(10'000, 'a'), "", 414, "path-too-long"},
      {cards, newCard().dump(), 400, "malformed-request", "Content-Length: 3\r\n"},
      {cards, newCard().dump(), 411, "length-required", "Transfer-Encoding: chunked\r\n"},
      {cards, newCard().dump(), 415, "unsupported-media-type", "Content-Encoding: gzip\r\n"},
      {"GET /none", "", 400, "malformed-request",
       "Range: bytes=" + std::string(8'000, '1') + "-\r\n"},
  };
  refuses(services->backendURL(), rows);
}

TEST_F(HostileInput, TheProviderRefusesWhatItCannotTakeAndChangesNothing) {
  const std::string key = "X-API-Key: key\r\n";
  const auto list = "/v1/users/" + token_ + "/instruments";
  const auto with = [](const char* member, const testing::Json& value) {
    testing::Json card = {{"number", PAN},
                          {"expiry_month", "12"},
                          {"expiry_year", "2035"},
                          {"security_code", "123"},
                          {"card_holder", "A Guest"}};
    card[member] = value;
    return testing::Json{
        {"email", "guest@example.com"}, {"use_case", "default"}, {"credit_card", card}};
  };
  const auto good = with("number", PAN).dump();
  auto numberAsAddress = with("number", PAN);
  numberAsAddress["email"] = PAN + "@example.com";
  auto nestedDeeply = with("number", PAN);
  for (int i = 0; i < 10; ++i) nestedDeeply = {{"credit_card", nestedDeeply}};
  const std::vector<Row> rows = {
      {"POST /v1/users", good, 401, "not-registered", ""},
      {"POST /v1/users", good, 401, "not-registered", "X-API-Key:\r\n"},
      {"GET /none", "", 401, "not-registered", ""},
      {"GET /none", "", 404, "no-such-resource", key},
      {"POST /v1/users", "{}", 422, "wrong-type", key},
      {"POST /v1/users", "\"" + PAN + "\"", 422, "wrong-type", key},
      {"POST /v1/users", PAN + "x", 400, "malformed-json", key},
      {"POST /v1/users", nestedDeeply.dump(), 400, "malformed-json", key},
      {"POST /v1/users", numberAsAddress.dump(), 422, "card-number-refused", key},
      {"POST /v1/users", with("number", 4).dump(), 422, "wrong-type", key},
      {"POST /v1/users", with("number", "4111111111111112").dump(), 422, "malformed-card", key},
      {"POST /v1/users", with("number", "4000000000000002").dump(), 422, "card-declined", key},
      {"POST /v1/users", with("expiry_year", "1999").dump(), 422, "malformed-card", key},
      {"POST /v1/users", with("pin", "1").dump(), 422, "unknown-member", key},
      {"POST " + list + "?use_case=default", good, 422, "unknown-member", key},
      {"GET " + list, "", 422, "unknown-use-case", key},
      {"GET " + list + "?use_case=" + PAN, "", 422, "unknown-use-case", key},
      {"GET " + list + "?use_case=%zz", "", 400, "malformed-request", key},
      {"GET /v1/users/" + PAN + "/instruments?use_case=default", "", 404, "unknown-token", key},
      {"DELETE " + list + "/none?use_case=default", "", 404, "instrument-gone", key},
      {"DELETE " + list + "/none", "", 422, "unknown-use-case", key},
  };
  refuses(services->providerURL(), rows);
}

TEST_F(HostileInput, WhatIsNoRequestIsAnsweredOrLetGo) {
  const auto before = kept();
  const std::pair<std::string, int> rows[] = {
      {"garbage\r\n\r\n", 400},
      {std::string(100'000, 'x') + "\r\n\r\n", 0},
      {"GET / HTTP/1.1\r\n" + std::string(20'000, 'h') + ": x\r\n\r\n", 400},
      {"OPTIONS / HTTP/1.1\r\n\r\n", 404},
      {"GET / HTTP/9.9\r\n\r\n", 400},
      {"GET /openapi.json HTTP/1.1\r\nContent-Length: -5\r\n\r\n", 400},
      {"GET /openapi.json HTTP/1.1\r\n\r\n", 200},
  };
  for (const auto& [bytes, status] : rows) {
    EXPECT_EQ(testing::say(services->backendURL(), bytes).status, status) << bytes.substr(0, 60);
  }
  EXPECT_EQ(kept(), before);
}

TEST_F(HostileInput, ASlowRequestIsLetGo) {
  ServiceLimits limits;
  limits.transferTime = std::chrono::milliseconds(30);
  reopen(limits);
  const auto heard =
      testing::say(services->backendURL(), "PUT /v1/guests/a@b HTTP/1.1\r\nContent-Length: 5\r\n");
  EXPECT_NE(heard.status, 200);
  EXPECT_EQ(sandbox->signedInEmail(), email);
}

}  // namespace
}  // namespace hlv::services
