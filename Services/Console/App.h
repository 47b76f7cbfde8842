// The app that the console plays. Private to the services.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKCompletions.h"
#include "Sandbox/EnteredAddress.h"
#include "Sandbox/EnteredCard.h"
#include "Sandbox/Sandbox.h"
#include "Services/Http/Refused.h"

namespace hlv::services {

/// A real kit over the sandbox. The app starts, and enables the kit, with the first thing that is
/// asked of it while a guest is signed in; as a kit keeps the guest that it was enabled with, the
/// app starts again for another one. Everything begins on the main queue, and each thing is an
/// operation of the story; what is asked for while another runs is told in the same one.
///
/// Threading: any, but for `look`. Installs the sandbox as the host of the process.
class App : public std::enable_shared_from_this<App> {
 public:
  /// How an operation came out.
  struct Outcome {
    std::int64_t operation = 0;
    /// Why nothing was done; missing otherwise.
    std::optional<Refused> refusal;
    /// How many times the kit has called the completion, and what it brought last.
    int answers = 0;
    std::shared_ptr<HLVSDKCreditCard> card = {};
    ErrorPtr error = {};
  };
  /// Called once on the main thread, when the kit has answered or nothing more can happen.
  using Done = std::function<void(const Outcome&)>;

  explicit App(std::shared_ptr<sandbox::Sandbox> sandbox);

  void signIn(const std::string& email, Done done);
  void signOut(Done done);
  void setReachable(bool reachable, Done done);
  /// Which lets the kit synchronise.
  void enterForeground(Done done);
  /// Everything is as at the beginning, with nobody signed in.
  void reset(Done done);
  void add(std::shared_ptr<sandbox::EnteredCard> card,
           std::shared_ptr<sandbox::EnteredAddress> address, Done done);
  void update(const std::string& ID, std::shared_ptr<sandbox::EnteredAddress> address, Done done);
  void remove(const std::string& ID, Done done);

  /// Tells those whose operation has come to its end. To be called on the main thread after each
  /// turn of the main queue.
  void look();

 private:
  class Running;
  using RunningPtr = std::shared_ptr<Running>;
  /// Refuses by throwing `Refused`.
  using Start = std::function<void(const RunningPtr&)>;

  void run(const std::string& name, Start start, Done done);
  void launchForGuest();
  HLVSDKGuestCardCompletion heardBy(const RunningPtr& running, const std::string& what) const;
  std::string useCaseOf(const std::string& ID) const;

  const std::shared_ptr<sandbox::Sandbox> sandbox_;
  // On the main thread only.
  std::vector<RunningPtr> running_;
  std::optional<std::string> launchedFor_;
};

}  // namespace hlv::services
