// One run of the command: the store, the app that it simulates, and the main queue.
//
// Threading: the main thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Client/RemoteHost.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Sandbox/App/SimulatedApp.h"
#include "Sandbox/Sandbox.h"
#include "Tools/Output/Report.h"

namespace hlv::sandbox::tool {

/// What can be said with every command.
struct GlobalOptions {
  /// Empty means the store in the user's data folder.
  std::string storePath;
  /// Instead of that, one that goes with the command.
  bool isInMemory = false;
  bool json = false;
  std::optional<std::uint64_t> seed;
  Enabling enabling = Enabling::normal;
  bool logToConsole = false;
  /// Where the services are; empty for the embedded ones.
  std::string backendURL;
  std::string providerURL;

  /// Throws `Problem` when the services are elsewhere: `command` works on the store.
  void requireOwnServices(const std::string& command) const;
};

class Session {
 public:
  /// Opens the store and installs the sandbox as the host, or a host that speaks to the services
  /// elsewhere. Throws `Problem` when it cannot.
  explicit Session(const GlobalOptions& options);

  Sandbox& sandbox() { return *sandbox_; }
  const SimulatedApp& app() const { return app_; }
  /// Where the store is.
  std::string storePath() const;
  /// What a tester does to the services, wherever they are.
  std::shared_ptr<Tester> tester() const;
  void requireOwnServices(const std::string& command) const {
    options_.requireOwnServices(command);
  }
  /// Throws `Problem` when the guest cannot be signed in.
  void signIn(const std::string& email);
  /// On this side, and at the backend. Throws `Problem` when the backend cannot be reached.
  void signOut();
  /// The guest's cards, where the backend is.
  std::vector<BackendCard> backendCards() const;
  /// The signed-in guest. Throws `Problem` when nobody is.
  std::shared_ptr<HLVSDKGuest> guest() const;

  /// Begins an operation in the journal. What goes wrong from here on is the operation's failure.
  void begin(const std::string& operation);
  /// The same for an operation of the kit, which is enabled first.
  void beginWithKit(const std::string& operation);
  /// Once; later calls do nothing.
  void enableKit() { sandbox::enableKit(options_.enabling); }
  /// Pumps the main queue until every reply has come and nothing more can happen.
  void settle() const;
  /// Settles, and returns what the call has brought.
  AppCall::Outcome outcomeOf(const std::shared_ptr<const AppCall>& call) const;

  /// Why the current operation will not complete, as far as that is known.
  std::string whyNothingCame() const;

  /// Runs what makes a report. What it throws once an operation has begun becomes a report that the
  /// operation failed; what it throws before is thrown on, since nothing has changed.
  Report attempt(const std::function<Report()>& act) const;

  /// A command that is no operation: the two sides as they are now, and no timeline.
  Report report(const std::string& command) const;
  /// The current operation with its timeline and the two sides.
  Report report(Report::Outcome outcome, std::string sentence, ErrorPtr error = nullptr) const;
  /// The current operation, by what came of it.
  Report report(const Result<>& result, const std::string& sentence) const;

 private:
  const GlobalOptions options_;
  const std::shared_ptr<Sandbox> sandbox_;
  /// Null for the embedded services.
  const std::shared_ptr<client::RemoteHost> remote_;
  const SimulatedApp app_;
  std::string operation_;
  std::int64_t lastFiringBefore_ = 0;
};

}  // namespace hlv::sandbox::tool
