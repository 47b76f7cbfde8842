#include <set>

#include "Host/HLVSDKCoreKit/HLVSDKAsserts.h"
#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "Host/Halvo_Errors/HLVErrorFacade.h"
#include "Sandbox/App/SimulatedApp.h"
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

class WholeRun : public SandboxTest {
 protected:
  WholeRun() {
    start({}, true);
    app_ = std::make_unique<SimulatedApp>(sandbox, sandbox->host(),
                                          [this] { return sandbox->isQuiet(); });
    enableKit(Enabling::normal);
  }

  /// With its number where a name and a street belong.
  void add(CardFields fields, const std::string& code) {
    fields.cvv = code;
    // A name behind it, since the store keeps the month right behind the holder.
    fields.cardHolder = fields.pan + " Guest";
    write(app_->add(EnteredCard::make(fields), addressWith(fields.pan), guest));
  }

  /// Every operation once, for a guest with no card yet: a first card, a further one, and all that
  /// is done with cards.
  void play(const CardFields& card, const std::string& code) {
    const auto name = "round" + std::to_string(++rounds_);
    sandbox->journal().beginOperation(name);
    EXPECT_TRUE(sandbox->signIn(name + "@example.com"));
    guest = HLVSDKGuest::currentGuest();
    add(card, code);
    add(card, code);
    const auto stored = sandbox->backendCards();
    const NullableString ID = stored.empty() ? NullableString() : stored.back().halvoID;
    write(app_->update(ID, addressWith(card.pan), guest));
    sandbox->enterForeground();
    pumpUntilQuiet();
    write(app_->remove(ID, "default", guest));
  }

  /// A number that somebody put into texts by mistake.
  void misuse(const std::string& number) {
    std::string spaced = number;
    for (const std::size_t at : {10U, 4U}) spaced.insert(at, " ");
    sandbox->journal().record("app", "kit", number, spaced);
    const auto error = HLVErrorFacade::make()->errorWithCode(1, "Any", "with " + spaced);
    write(error);
    for (const auto& logger :
         {HLVSDKRemoteLogger::sharedLogger(), HLVSDKConsoleLogger::sharedLogger()}) {
      logger->logWithLevel(3, "File.cpp", 7, "-[A b]", "%@ and %@ and %@",
                           {NullableString(spaced), error, ErrorPtr()});
    }
    HLVSDKAsserts::handleParameterAssert(number, spaced);
  }

  /// Of all errors.
  std::string errorTexts;

 private:
  static std::shared_ptr<EnteredAddress> addressWith(const std::string& number) {
    // So long that the store does not note its length as a byte that reads like a digit.
    const auto text = number + " in a field";
    return EnteredAddress::make({text, text, text, text, text});
  }

  void write(const std::shared_ptr<const AppCall>& call) {
    pumpUntilQuiet();
    write(call->outcome().error);
  }
  void write(const ErrorPtr& error) {
    if (!error) return;
    errorTexts += error->domain() + error->localizedDescription().value_or("") + "\n" +
                  error->developerMessage().value_or("") + "\n";
  }

  std::unique_ptr<SimulatedApp> app_;
  int rounds_ = 0;
};

TEST_F(WholeRun, WithEveryCardOperationAndFaultLeavesNoNumberAndNoSecurityCodeAnywhere) {
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  const auto cards = testCards();
  const auto codeOf = [](const TestCard& card) { return card.name == "amex" ? "7391" : "739"; };
  for (const auto& card : cards) {
    play(card.fields, codeOf(card));
    misuse(card.fields.pan);
  }
  const auto tester = sandbox->tester();
  std::size_t armed = 0;
  for (const auto operation : allOperations()) {
    for (const auto kind : kindsOf(operation)) {
      Fault fault{.operation = operation, .kind = kind, .remaining = {}, .delayMilliseconds = 1};
      if (kind == FaultKind::cut) fault.bytes = 1;
      if (kind == FaultKind::slow) fault.bytesPerSecond = 1;
      ASSERT_TRUE(tester->arm(fault));
      ++armed;
      play(cards.front().fields, "739");
      tester->clearFaults();
    }
  }
  auto mistyped = cards.front().fields;
  mistyped.pan.back() = '2';
  add(mistyped, "739");
  auto all = leftBy(*sandbox, storePath());
  all.emplace_back("errors", errorTexts);
  all.emplace_back("stdout", ::testing::internal::GetCapturedStdout());
  all.emplace_back("stderr", ::testing::internal::GetCapturedStderr());
  for (const auto& [name, text] : all) {
    EXPECT_EQ(text.empty(), name == "stdout") << name;
    EXPECT_TRUE(name != "log" || text.find(" and (null)") != std::string::npos);
    const bool isText = name != "store" && name != "WAL";
    for (const auto& card : cards) {
      // Among bytes that are no text, three digits may stand by chance.
      const std::string code = isText || card.name == "amex" ? codeOf(card) : "";
      EXPECT_EQ(hlv::testing::CardDataSearch(card.fields.pan, code).in(text), std::nullopt)
          << card.name << " in " << name;
    }
    EXPECT_EQ(hlv::testing::CardDataSearch(mistyped.pan, "").in(text), std::nullopt) << name;
  }
  std::set<std::pair<Operation, FaultKind>> met;
  for (const auto& firing : tester->firings()) met.emplace(firing.operation, firing.kind);
  EXPECT_EQ(met.size(), armed) << "every fault met a call";
}

}  // namespace
}  // namespace hlv::sandbox
