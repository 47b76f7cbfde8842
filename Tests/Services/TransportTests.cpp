// What goes wrong between the kit's side and a service.
#include <atomic>
#include <thread>

#include "Tests/Services/ServicesTest.h"

namespace hlv::services {
namespace {

using testing::CannedServer;
using Cards = std::tuple<sandbox::Cards, ErrorPtr>;

std::string http(const std::string& body, const std::string& status = "200 OK") {
  return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
         body;
}

class Transport : public ServicesTest {
 protected:
  /// The error of one call to each service.
  std::pair<std::string, std::string> errors(const std::string& backendURL,
                                             const std::string& providerURL,
                                             std::chrono::milliseconds patience) {
    connect(backendURL, providerURL, patience);
    const auto [cards, backendError] =
        only<Cards>([&](auto completion) { backend->fetchGuestCreditCards(guest, completion); });
    const auto [list, providerError] = only<sandbox::ListAnswer>([&](auto completion) {
      provider->getPaymentInstrumentsList("tok", "default", completion);
    });
    return {nameOf(backendError), nameOf(providerError)};
  }
};

TEST_F(Transport, WhatIsNoWholeAnswerOfAServiceIsOneErrorOfItsOwn) {
  const std::string broken = "HLVTransportErrorDomain 3";
  const std::string unreadable = "HLVTransportErrorDomain 4";
  const auto many = [](const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
  };
  const std::pair<std::string, std::string> rows[] = {
      {"", broken},
      {"HTTP/1.1 200 OK\r\nContent-Le", broken},
      {"HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n{\"a\"", broken},
      {"garbage\r\n\r\n", unreadable},
      {many("garbage", 10'000), unreadable},
      {"HTTP/1.1 abc\r\n\r\n", unreadable},
      {"HTTP/1.1 \r\n\r\n", unreadable},
      {"HTTP/1.1 200 OK\r\nContent-Length: -1\r\n\r\n", unreadable},
      {"HTTP/1.1 200 OK\r\nContent-Length: 99999999999999999999\r\n\r\n", unreadable},
      {"HTTP/1.1 200 OK\r\nContent-Length: 999999999\r\n\r\n", unreadable},
      {http(""), unreadable},
      {http("null"), unreadable},
      {http("{\"credit_cards\":"), unreadable},
      {http("[1, 2]"), unreadable},
      {http("{\"credit_cards\": 1, \"instruments\": \"x\"}"), unreadable},
      {http("{\"credit_cards\": [{}], \"instruments\": [{}]}"), unreadable},
      {http(many("[", 60'000)), unreadable},
      {http("{}", "302 Found"), unreadable},
      {http("{\"error\": \"no\"}", "500 Internal Server Error"), unreadable},
      {http("{\"error\": {\"domain\": \"D\", \"number\": \"1\", \"message\": \"m\"}}", "400 B"),
       unreadable},
      {http("{\"error\": {\"domain\": \"D\", \"number\": 7, \"message\": \"\"}}", "418 T"), "D 7"},
      {http("{\"credit_cards\": null, \"instruments\": null}") + "and more", "none"},
  };
  for (const auto& [bytes, error] : rows) {
    const CannedServer server(bytes);
    const auto [atBackend, atProvider] =
        errors(server.url(), server.url(), std::chrono::seconds(30));
    EXPECT_EQ(atBackend, error) << bytes.substr(0, 80);
    EXPECT_EQ(atProvider, error) << bytes.substr(0, 80);
  }
}

TEST_F(Transport, AnAnswerThatDoesNotComeInTimeIsATimeOutAndNobodyThereIsUnreachable) {
  std::string url;
  {
    const CannedServer server("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n{", true);
    url = server.url();
    EXPECT_EQ(errors(url, url, std::chrono::milliseconds(30)),
              std::make_pair(std::string("HLVTransportErrorDomain 2"),
                             std::string("HLVTransportErrorDomain 2")));
  }
  EXPECT_EQ(errors(url, url, std::chrono::seconds(30)).first, "HLVTransportErrorDomain 1");
}

TEST_F(Transport, AnAnswerAfterTheTimeOutIsNotHeard) {
  serve();
  ASSERT_EQ(sandbox->signIn(email), "");
  connect(services->backendURL(), services->providerURL(), std::chrono::milliseconds(30));
  ASSERT_EQ(arm("fetchGuestCreditCards", "delay", [](auto& fault) { fault.delayMilliseconds = 1; }),
            "");
  std::atomic<int> answers{0};
  std::string error;
  backend->fetchGuestCreditCards(guest, [&](const auto&, const ErrorPtr& problem) {
    error = nameOf(problem);
    ++answers;
  });
  // Nobody pumps the main queue yet, which the service's delayed answer needs.
  while (answers == 0) std::this_thread::yield();
  EXPECT_EQ(error, "HLVTransportErrorDomain 2");
  pumpUntilQuiet();
  services.reset();
  settle();
  EXPECT_EQ(answers, 1);
}

TEST_F(Transport, AnArmedFaultHappensToTheConnectionItself) {
  serve();
  ASSERT_EQ(sandbox->signIn(email), "");
  const std::pair<std::string, std::string> rows[] = {{"refused", "HLVTransportErrorDomain 3"},
                                                      {"reset", "HLVTransportErrorDomain 3"},
                                                      {"garbage", "HLVTransportErrorDomain 4"}};
  for (const auto& [kind, error] : rows) {
    for (const auto* operation : {"fetchGuestCreditCards", "getPaymentInstrumentsList"}) {
      ASSERT_EQ(arm(operation, kind), "");
    }
    const auto [atBackend, atProvider] =
        errors(services->backendURL(), services->providerURL(), std::chrono::seconds(30));
    EXPECT_EQ(atBackend, error) << kind;
    EXPECT_EQ(atProvider, error) << kind;
    EXPECT_EQ(sandbox->faults().armed().size(), 0U);
  }
  ASSERT_EQ(arm("fetchGuestCreditCards", "reset"), "");
  const auto half = ask(services->backendURL(), "GET " + guestPath() + "/cards");
  const std::string whole = "{\"credit_cards\":[]}";
  EXPECT_EQ(half.status, 200);
  EXPECT_TRUE(whole.starts_with(half.text) && half.text != whole) << half.text;
  ASSERT_EQ(arm("fetchGuestCreditCards", "twice"), "");
  const auto twice = ask(services->backendURL(), "GET " + guestPath() + "/cards").text;
  EXPECT_TRUE(twice.starts_with(whole + "HTTP/1.1 200") && twice.ends_with(whole)) << twice;
}

TEST_F(Transport, OnThisSideTheNetworkCanBeOffToo) {
  serveAndConnect();
  local->setReachable(false);
  EXPECT_EQ(nameOf(std::get<2>(add("visa"))), "HLVURLErrorDomain 1");
  const auto [cards, error] =
      only<Cards>([&](auto completion) { backend->fetchGuestCreditCards(guest, completion); });
  EXPECT_EQ(nameOf(error), "HLVURLErrorDomain 1");
}

TEST_F(Transport, OnlyAPlainURLIsOne) {
  serve();
  const auto good = services->backendURL();
  for (const std::string url : {"", "127.0.0.1:80", "https://127.0.0.1:80", "http://", "http://:80",
                                "http://a:", "http://a:0", "http://a:65536", "http://a:80/path",
                                "http://a b:80", "http://a:80\r\nX: y"}) {
    EXPECT_FALSE(RemoteHost::open(sandbox, {url, good}).host) << url;
    EXPECT_FALSE(RemoteHost::open(sandbox, {good, url}).host) << url;
  }
  EXPECT_TRUE(RemoteHost::open(sandbox, {"http://localhost", good + "/"}).host);
}

}  // namespace
}  // namespace hlv::services
