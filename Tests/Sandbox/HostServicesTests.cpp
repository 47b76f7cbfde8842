#include "Host/HLVSDKCoreKit/HLVSDKAsserts.h"
#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Host/Halvo_Authentication/HLVSession.h"
#include "Platform/Platform.h"
#include "Tests/Sandbox/SandboxTest.h"

namespace hlv::sandbox {
namespace {

class HostServices : public SandboxTest {
 protected:
  /// Notes the notifications of one name, as "key value" pairs without the keys.
  std::unique_ptr<Observation> note(const NullableString& name, std::string& story) {
    return Platform::current()->notificationCenter()->observe(
        name, [&story, name](const Notification& notification) {
          story += "!";
          for (const auto& [key, value] : notification.userInfo) {
            story += " " + std::to_string(value.integerValue());
          }
        });
  }

  std::vector<std::string> story() const {
    std::vector<std::string> lines;
    const auto operations = sandbox->journal().last(1);
    for (const auto& event : operations.at(0).events) {
      lines.push_back(event.from + " > " + event.to + ": " + event.what +
                      (event.result.empty() ? "" : " = " + event.result));
    }
    return lines;
  }
};

TEST_F(HostServices, TheThreeNotificationsArePostedWithTheirValues) {
  start();
  std::string authorisation;
  std::string reachability;
  std::string foreground;
  const auto first = note(kHLVSDKDidChangeAuthorizationStatusNotification(), authorisation);
  const auto second =
      note(HLVSDKReachabilityDidChangeReachabilityStateNotification(), reachability);
  const auto third = note(UIApplicationWillEnterForegroundNotification, foreground);
  sandbox->signOut();
  sandbox->signIn(email);
  sandbox->setReachable(false);
  sandbox->setReachable(true);
  sandbox->setReachable(true);
  sandbox->enterForeground();
  EXPECT_EQ(authorisation, "! 0! 1");
  // The previous state's key sorts before the state's.
  EXPECT_EQ(reachability, "! 1 0! 0 1! 1 1");
  EXPECT_EQ(foreground, "!");
}

TEST_F(HostServices, SessionAndReachabilityAnswerWhatTheStoreSays) {
  start();
  const auto session = HLVSession::activeSession();
  EXPECT_TRUE(session->isAuthorized());
  sandbox->signOut();
  EXPECT_FALSE(session->isAuthorized());
  EXPECT_EQ(HLVSession::activeSession(), nullptr);
  EXPECT_EQ(HLVSDKGuest::currentGuest(), nullptr);
  sandbox->setReachable(false);
  EXPECT_EQ(HLVSDKReachability::sharedReachability()->currentState(), 0);
  EXPECT_NE(sandbox->signIn("nobody"), "");
  EXPECT_EQ(sandbox->signedInEmail(), std::nullopt);
}

TEST_F(HostServices, TheJournalTellsEachThingOnceInOrder) {
  start();
  arm("getPaymentInstrumentsList", "error");
  sandbox->journal().beginOperation("look");
  list("tok_x", "private");
  for (const auto& logger :
       {HLVSDKRemoteLogger::sharedLogger(), HLVSDKConsoleLogger::sharedLogger()}) {
    logger->logWithLevel(3, "F.cpp", 1, "f", "Removed %@", {NullableString()});
  }
  HLVSDKAsserts::handleParameterAssert("guest", "Who?");
  sandbox->enterForeground();
  EXPECT_EQ(
      story(),
      (std::vector<std::string>{
          "kit > provider: getPaymentInstrumentsList use case private",
          "provider > provider: fault 'error' met getPaymentInstrumentsList",
          "provider > kit: getPaymentInstrumentsList use case private = error PLVErrorDomain 500",
          "kit > log: Removed (null) = info",
          "kit > assert: guest: Who?",
          "app > kit: will enter foreground",
      }));
  sandbox->journal().beginOperation("next");
  EXPECT_EQ(sandbox->journal().last(5).size(), 3U) << "start, look and next";
}

TEST_F(HostServices, APlantedInstrumentIsAtTheProviderAlone) {
  start();
  EXPECT_NE(sandbox->plantInstrument(findTestCard("visa")->fields), "") << "no token yet";
  addFirstCard("visa");
  EXPECT_EQ(sandbox->plantInstrument(findTestCard("amex")->fields), "");
  EXPECT_NE(sandbox->plantInstrument(findTestCard("declined")->fields), "");
  EXPECT_EQ(sandbox->providerInstruments().size(), 2U);
  EXPECT_EQ(sandbox->backendCards().size(), 1U);
}

}  // namespace
}  // namespace hlv::sandbox
