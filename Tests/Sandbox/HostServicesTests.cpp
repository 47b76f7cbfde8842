#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"
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

}  // namespace
}  // namespace hlv::sandbox
