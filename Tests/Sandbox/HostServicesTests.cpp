#include "Host/HLVSDKCoreKit/HLVSDKAsserts.h"
#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Host/Halvo_Authentication/HLVSession.h"
#include "Platform/Platform.h"
#include "Tests/Sandbox/SandboxTest.h"

namespace hlv::sandbox {
namespace {

using HostServices = SandboxTest;

TEST_F(HostServices, NotificationsCarryTheirValuesAndTheHostAnswersTheSame) {
  start();
  std::string shown;
  std::vector<std::unique_ptr<Observation>> observations;
  const std::pair<NullableString, const char*> names[] = {
      {kHLVSDKDidChangeAuthorizationStatusNotification(), "a"},
      {HLVSDKReachabilityDidChangeReachabilityStateNotification(), "r"},
      {UIApplicationWillEnterForegroundNotification, "f"}};
  for (const auto& [name, sign] : names) {
    observations.push_back(Platform::current()->notificationCenter()->observe(
        name, [&shown, sign = sign](const Notification& notification) {
          shown += sign;
          for (const auto& entry : notification.userInfo) {
            shown += std::to_string(entry.second.integerValue());
          }
        }));
  }
  const auto session = HLVSession::activeSession();
  EXPECT_TRUE(session->isAuthorized());
  sandbox->signOut();
  EXPECT_FALSE(session->isAuthorized());
  EXPECT_EQ(HLVSession::activeSession(), nullptr);
  EXPECT_EQ(HLVSDKGuest::currentGuest(), nullptr);
  for (const char* address : {"nobody", "4111-1111-1111-1111@example.com"}) {
    EXPECT_FALSE(sandbox->signIn(address));
    EXPECT_TRUE(sandbox->signedInEmail() == std::nullopt);
  }
  EXPECT_TRUE(sandbox->signIn(email));
  sandbox->setReachable(false);
  EXPECT_EQ(HLVSDKReachability::sharedReachability()->currentState(), 0);
  sandbox->setReachable(true);
  sandbox->setReachable(true);
  sandbox->enterForeground();
  // The previous state's key sorts before the state's.
  EXPECT_EQ(shown, "a0a1r10r01r11f");
}

TEST_F(HostServices, TheJournalRecordsEachThingOnceInOrder) {
  start();
  arm("getPaymentInstrumentsList", "error");
  sandbox->journal().beginOperation("look");
  list("tok_x", "private");
  addCard("visa", guest);
  for (const auto& logger :
       {HLVSDKRemoteLogger::sharedLogger(), HLVSDKConsoleLogger::sharedLogger()}) {
    logger->logWithLevel(3, "F.cpp", 1, "f", "Removed %@", {NullableString()});
  }
  HLVSDKAsserts::handleParameterAssert("guest", "Who?");
  sandbox->enterForeground();
  std::string timeline;
  const auto operations = sandbox->journal().last(1);
  for (const auto& event : operations.at(0).events) {
    timeline += event.from + " > " + event.to + ": " + event.what + " = " + event.result;
    timeline += (event.thread == "main" ? "" : " on " + event.thread) + "\n";
  }
  EXPECT_EQ(timeline,
            "kit > provider: getPaymentInstrumentsList use case private = \n"
            "provider > provider: fault 'error' met getPaymentInstrumentsList =  on service-2\n"
            "provider > kit: getPaymentInstrumentsList use case private = "
            "error PLVErrorDomain 500 on service-2\n"
            "kit > backend: addCreditCardForGuest use case default = \n"
            "backend > kit: addCreditCardForGuest use case default = card " +
                sandbox->backendCards()[0].halvoID +
                " on service-1\n"
                "kit > log: Removed (null) = info\n"
                "kit > assert: guest: Who? = \n"
                "app > kit: will enter foreground = \n");
  sandbox->journal().beginOperation("next");
  EXPECT_EQ(sandbox->journal().last(5).size(), 3U) << "start, look and next";
}

}  // namespace
}  // namespace hlv::sandbox
