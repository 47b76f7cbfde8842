#include "Host/HLVSDKCoreKit/HLVSDKAsserts.h"
#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "Host/Halvo_Errors/HLVErrorFacade.h"
#include "Sandbox/Errors/SandboxError.h"
#include "Sandbox/Masking/MaskedText.h"
#include "Tests/Sandbox/SandboxTest.h"
#include "Tests/Secrecy/CardDataSearch.h"

namespace hlv::sandbox {
namespace {

using Secrecy = SandboxTest;

TEST_F(Secrecy, WhateverMayBeACardNumberIsMaskedToItsLastFourDigits) {
  // Blanks, dashes, dots, slashes and low lines of any script, what shows as nothing, keycaps, and
  // bytes that are no character.
  for (const std::string gap : {"", " -- ", "\r\n", "\u00a0", "\u2014", "\u00b7", "\uff0f",
                                "\uff3f", "\u200b", "\ufe0f\u20e3", "\xe2\x80"}) {
    EXPECT_EQ(maskedText("no 4111" + gap + "2222" + gap + "33334444."),
              "no ****" + gap + "****" + gap + "****4444.");
  }
  const std::pair<const char*, const char*> rows[] = {
      {"4 1 1 1 2 2 2 2 3 3 3 3 4 4 4 4", "* * * * * * * * * * * * 4 4 4 4"},
      // Full-width, Arabic-Indic and mathematical digits, and an overlong one.
      {"４１１１２２２２３３３３４４４４", "************４４４４"},
      {"٤١١١ ٢٢٢٢ ٣٣٣٣ ٤٤٤٤", "**** **** **** ٤٤٤٤"},
      {"4111２２２２٣٣٣٣\U0001d7d2\U0001d7d2\U0001d7d24",
       "************\U0001d7d2\U0001d7d2\U0001d7d24"},
      {"\xc0\xb4"
       "111222233334444\xf0\x9f",
       "************4444\xf0\x9f"},
      {"411122223334", "********3334"},
      {"41112222333", "41112222333"},
      {"a4111222233334444b", "a************4444b"},
      {"4111222233334444 4111222233334444", "**************** ************4444"},
      {"2031-07-01T07:53:01.123Z 12:30:59.999", "2031-07-01T07:53:01.123Z 12:30:59.999"},
      {"http://192.168.10.1:65535 took 1234.567 ms", "http://192.168.10.1:65535 took 1234.567 ms"},
      {"EUR 12,345,678,901.23 of 99 cards", "EUR 12,345,678,901.23 of 99 cards"},
      {"Größe 41112222 ñ 33334444 ٣٤٥", "Größe 41112222 ñ 33334444 ٣٤٥"},
  };
  for (const auto& [text, masked] : rows) {
    EXPECT_EQ(maskedText(text), masked);
    EXPECT_EQ(holdsCardNumber(text), std::string(text) != masked) << masked;
    EXPECT_EQ(maskedText(masked), masked);
  }
}

TEST_F(Secrecy, TheFacadeMasksEveryTextNamesThePlaceAndShowsNoValue) {
  start();
  const auto facade = HLVErrorFacade::make();
  const auto inner = facade->errorWithCode(3, "Any", "bad card 4111222233334444");
  const auto wrapped = facade->paymentProviderErrorWithError(inner);
  EXPECT_EQ(wrapped->localizedDescription(), "bad card ************4444");
  EXPECT_EQ(facade->invalidArgumentErrorWithName("zip", "secret", std::nullopt)->developerMessage(),
            "Invalid argument: zip has a value that cannot be used.");
  EXPECT_EQ(facade->requiredArgumentErrorWithName("token", "Where is it?", "-[A b]", "A.cpp")
                ->developerMessage(),
            "Required argument: token is missing. Where is it? (-[A b], A.cpp)");
}

// What the tests of the server do to cards in every way, an app can do to texts by mistake.
TEST_F(Secrecy, ANumberInATextOfTheAppIsLeftNowhere) {
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  start({}, true);
  std::string errors;
  sandbox->journal().beginOperation("misuse");
  for (const auto& card : testCards()) {
    std::string spaced = card.fields.pan;
    for (const std::size_t at : {10U, 4U}) spaced.insert(at, " ");
    sandbox->journal().record("app", "kit", card.fields.pan, spaced);
    const auto error = HLVErrorFacade::make()->errorWithCode(1, "Any", "with " + spaced);
    errors += *error->localizedDescription() + *error->developerMessage() + "\n";
    for (const auto& logger :
         {HLVSDKRemoteLogger::sharedLogger(), HLVSDKConsoleLogger::sharedLogger()}) {
      logger->logWithLevel(3, "File.cpp", 7, "-[A b]", "%@ and %@ and %@",
                           {NullableString(spaced), error, ErrorPtr()});
    }
    HLVSDKAsserts::handleParameterAssert(card.fields.pan, spaced);
  }
  std::string journal;
  const auto operations = sandbox->journal().last(1);
  for (const auto& event : operations.at(0).events) {
    journal += event.what + " " + event.result + "\n";
  }
  // While the store is open, it has a write-ahead log.
  const std::pair<const char*, std::string> all[] = {
      {"journal", journal},
      {"log", contentOf(storePath() + ".log")},
      {"store", contentOf(storePath())},
      {"WAL", contentOf(storePath() + "-wal")},
      {"errors", errors},
      {"stdout", ::testing::internal::GetCapturedStdout()},
      {"stderr", ::testing::internal::GetCapturedStderr()}};
  for (const auto& [name, text] : all) {
    EXPECT_EQ(text.empty(), name == std::string("stdout")) << name;
    EXPECT_TRUE(name != std::string("log") || text.find(" and (null)") != std::string::npos);
    for (const auto& card : testCards()) {
      EXPECT_EQ(hlv::testing::CardDataSearch(card.fields.pan, "").in(text), std::nullopt)
          << card.name << " in " << name;
    }
  }
}

}  // namespace
}  // namespace hlv::sandbox
