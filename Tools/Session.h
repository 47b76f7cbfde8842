// One run of the app that the command plays: the sandbox, the kit over it, and the main queue.
//
// Threading: the main thread.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Client/RemoteHost.h"
#include "Host/HLVSDKCoreKit/HLVSDKCompletions.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Platform/NotificationCenter.h"
#include "Sandbox/Sandbox.h"
#include "Tools/GlobalOptions.h"
#include "Tools/Report.h"

namespace hlv::tool {

class Session {
 public:
  /// Opens the store and installs the sandbox as the host, or a host that speaks to the services
  /// elsewhere. Throws Problem when it cannot, or when they do not answer.
  explicit Session(const GlobalOptions& options);
  /// Lets go of kit and host, so that none of their threads works while the process exits.
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  sandbox::Sandbox& sandbox() { return *sandbox_; }
  std::shared_ptr<sandbox::Sandbox> sharedSandbox() { return sandbox_; }
  /// Where the store is.
  std::string storePath() const;
  /// What a tester does to the services, wherever they are.
  std::shared_ptr<sandbox::Tester> tester() const;
  /// Throws Problem when the services are elsewhere: `command` works on the store.
  void requireOwnServices(const std::string& command) const;
  /// Throws Problem when the guest cannot be signed in.
  void signIn(const std::string& email);
  /// On this side, and at the backend. Throws Problem when the backend cannot be reached.
  void signOut();
  /// The guest's cards, where the backend is.
  std::vector<sandbox::BackendCard> backendCards() const;
  /// The signed-in guest. Throws Problem when nobody is.
  std::shared_ptr<HLVSDKGuest> guest() const;

  /// Begins an operation in the journal.
  void begin(const std::string& operation);
  /// Enables the kit, which from then on follows the guest who is signed in. Later calls change
  /// nothing.
  void enableKit();
  static bool kitIsEnabled();
  /// Pumps the main queue until every answer has come and nothing more can happen.
  void settle();

  /// What a completion brought.
  struct Answer {
    int times = 0;
    std::shared_ptr<HLVSDKGuest> guest;
    std::shared_ptr<HLVSDKCreditCard> card;
    ErrorPtr error;
  };
  /// Lets `start` call the kit, and settles.
  Answer call(const std::string& what, const std::function<void(HLVSDKGuestCardCompletion)>& start);

  /// Why the current operation will not complete, as far as that is known.
  std::string whyNothingCame() const;

  /// A command that is no operation: the two sides as they are now, and no timeline.
  Report report(const std::string& command) const;
  /// The current operation with its timeline and the two sides.
  Report report(Report::Outcome outcome, std::string sentence, ErrorPtr error = nullptr) const;

 private:
  /// Whether every answer has come and nothing more can.
  bool isQuiet() const;

  const GlobalOptions options_;
  const std::shared_ptr<sandbox::Sandbox> sandbox_;
  /// Null for the embedded services.
  const std::shared_ptr<client::RemoteHost> remote_;
  std::unique_ptr<Observation> followsGuest_;
  std::string operation_;
  std::size_t firingsBefore_ = 0;
};

}  // namespace hlv::tool
