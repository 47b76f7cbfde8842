#include <fstream>
#include <iterator>

#include "Host/HLVSDKCoreKit/HLVSDKAsserts.h"
#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "Host/Halvo_Errors/HLVErrorFacade.h"
#include "Sandbox/Logging/MaskedText.h"
#include "Sandbox/SandboxError.h"
#include "Tests/Sandbox/SandboxTest.h"

namespace hlv::sandbox {
namespace {

const std::string pan = "4111222233334444";  // Of no issuer's card: it fails the checksum.

/// Where five digits or more of the number stand in the text, with or without gaps, or "nowhere".
std::string leakIn(const std::string& text, const std::string& number) {
  std::string dense;
  for (const char character : text) {
    if (character != ' ' && character != '-') dense += character;
  }
  for (std::size_t at = 0; at + 5 <= number.size(); ++at) {
    const auto found = dense.find(number.substr(at, 5));
    if (found != std::string::npos) return "at " + std::to_string(found);
  }
  return "nowhere";
}

using Secrecy = SandboxTest;

TEST_F(Secrecy, WhateverMayBeACardNumberIsMaskedToItsLastFourDigits) {
  const std::pair<const char*, const char*> rows[] = {
      {"4111222233334444", "************4444"},
      {"no 4111 2222-3333 4444.", "no **** ****-**** 4444."},
      {"4 1 1 1 2 2 2 2 3 3 3 3 4 4 4 4", "* * * * * * * * * * * * 4 4 4 4"},
      {"411122223334", "********3334"},
      {"41112222333", "41112222333"},
      {"a4111222233334444b", "a************4444b"},
      {"4111222233334444 4111222233334444", "**************** ************4444"},
      {"2031-07-01 12:30", "2031-07-01 12:30"},
      {"", ""},
  };
  for (const auto& [text, masked] : rows) EXPECT_EQ(maskedText(text), masked);
}

TEST_F(Secrecy, TheFacadeMasksEveryTextNamesThePlaceAndNeverTellsAValue) {
  start();
  const auto facade = HLVErrorFacade::make();
  const auto inner = facade->errorWithCode(3, "Any", "bad card " + pan);
  EXPECT_EQ(inner->localizedDescription(), "bad card ************4444");
  const auto wrapped = facade->paymentProviderErrorWithError(inner);
  EXPECT_EQ(wrapped->localizedDescription(), inner->localizedDescription());
  EXPECT_EQ(std::dynamic_pointer_cast<const SandboxError>(wrapped)->underlyingError(), inner);
  const auto invalid = facade->invalidArgumentErrorWithName("zip", "secret", std::nullopt);
  EXPECT_EQ(invalid->developerMessage()->find("secret"), std::string::npos);
  EXPECT_NE(invalid->developerMessage()->find("zip"), std::string::npos);
  const auto required = facade->requiredArgumentErrorWithName("token", "Where is it?",
                                                              "-[A b]_block_invoke", "A.cpp");
  for (const char* part : {"token", "Where is it?", "-[A b]_block_invoke", "A.cpp"}) {
    EXPECT_NE(required->developerMessage()->find(part), std::string::npos) << part;
  }
  EXPECT_EQ(nameOf(facade->errorWithCode(1, urlErrorDomain, std::nullopt)), "HLVURLErrorDomain 1");
}

TEST_F(Secrecy, AFullAddWithEveryLogOnLeavesNoNumberAndNoSecurityCodeAnywhere) {
  const auto fields = findTestCard("amex")->fields;
  const std::string cvv = "7391";
  std::string spaced = fields.pan;
  for (const std::size_t at : {10U, 4U}) spaced.insert(at, " ");
  ::testing::internal::CaptureStderr();
  {
    SandboxOptions options;
    options.storePath = storePath();
    options.logToConsole = true;
    sandbox = Sandbox::open(options).sandbox;
    Host::install(sandbox->host());
    backend = HLVSDKAPIManager::manager();
    provider = PLVInAppClient::sharedInstance();
    provider->registerWithAPIKey("key");
    sandbox->signIn(email);
    guest = HLVSDKGuest::currentGuest();
  }
  sandbox->journal().beginOperation("add " + fields.pan);
  const auto token = answerTo<NullableString, ErrorPtr>([&](auto completion) {
    provider->createUserToken(email,
                              PLVPaymentInstrument::createCreditCardPaymentInstrumentWithPan(
                                  fields.pan, "12", "2033", cvv, "Holder"),
                              "default", completion);
  });
  ASSERT_EQ(nameOf(std::get<1>(token)), "none");
  addCard("amex", guest);
  const auto error = HLVErrorFacade::make()->errorWithCode(1, "Any", "with " + spaced);
  for (const auto& logger :
       {HLVSDKRemoteLogger::sharedLogger(), HLVSDKConsoleLogger::sharedLogger()}) {
    for (int level = 1; level <= 4; ++level) {
      logger->logWithLevel(level, "File.cpp", 7, "-[A b]", "%@ and %@ and %@",
                           {NullableString(spaced), error, ErrorPtr()});
    }
  }
  HLVSDKAsserts::handleAssertWithMessage("assert " + spaced);
  HLVSDKAsserts::handleParameterAssert(fields.pan, std::nullopt);
  const auto console = ::testing::internal::GetCapturedStderr();
  EXPECT_NE(console.find("with **** ****** *0005 and (null)"), std::string::npos) << "written";

  std::string everything = console;
  for (const auto& entry : std::filesystem::directory_iterator(path(""))) {
    std::ifstream file(entry.path(), std::ios::binary);
    everything.append(std::istreambuf_iterator<char>(file), {});
  }
  EXPECT_NE(everything.find("SQLite format 3"), std::string::npos) << "the store was searched";
  EXPECT_EQ(leakIn(everything, fields.pan), "nowhere");
  EXPECT_EQ(everything.find(cvv), std::string::npos);
}

}  // namespace
}  // namespace hlv::sandbox
