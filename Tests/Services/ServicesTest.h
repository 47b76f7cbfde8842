// The sandbox's services on ports of their own, and the kit over a host that speaks to them.
#pragma once

#include <memory>
#include <string>
#include <tuple>

#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Services/Remote/RemoteHost.h"
#include "Services/Services.h"
#include "Tests/Sandbox/SandboxTest.h"
#include "Tests/Services/Talk.h"

namespace hlv::services {

using sandbox::nameOf;
using testing::ask;
using testing::Heard;

/// `sandbox` is the one behind the services.
class ServicesTest : public sandbox::SandboxTest {
 protected:
  using Outcome = sandbox::CardAnswer;

  ~ServicesTest() override;

  void serve();
  /// Opens the services again, on the same sandbox and other ports.
  void reopen(ServiceLimits limits = {});
  /// So little patience for the sandbox that only what nobody answers may be asked.
  void reopenImpatiently();
  /// Ends the services and lets go of their store.
  void endServices();
  /// A RemoteHost at these places, with the guest signed in on its side.
  void connect(const std::string& backendURL, const std::string& providerURL,
               std::chrono::milliseconds patience = std::chrono::seconds(30));
  /// Services, and the guest signed in on both sides.
  void serveAndConnect();

  // The kit's operations over the connection, as calls that return.

  Outcome add(const sandbox::Typed& card, const std::string& useCase = "default");
  Outcome update(const NullableString& ID, sandbox::AddressFields address);
  Outcome remove(const NullableString& ID, const std::string& useCase = "default");
  bool synchronize();
  void settle();
  /// What a call brings, which is made with a completion that takes what `Answer` holds.
  template <class Answer>
  Answer only(const auto& call) {
    const auto answers = std::make_shared<std::vector<Answer>>();
    call([answers](auto... results) { answers->emplace_back(std::move(results)...); });
    settle();
    EXPECT_EQ(answers->size(), 1U);
    return answers->empty() ? Answer() : answers->front();
  }

  static std::string guestPath() { return "/v1/guests/" + email; }

  std::unique_ptr<Services> services;
  std::shared_ptr<RemoteHost> remote;
  /// On this side of the connection.
  std::shared_ptr<sandbox::Sandbox> local;

 private:
  std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager_;
};

}  // namespace hlv::services
