// The app that the console plays. Private to the server.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKCompletions.h"
#include "Platform/NotificationCenter.h"
#include "Sandbox/EnteredAddress.h"
#include "Sandbox/EnteredCard.h"
#include "Sandbox/Sandbox.h"
#include "Server/Api/Registry.h"
#include "Server/Http/HttpError.h"

namespace hlv::server {

/// A real kit over one sandbox at a time. The app enables the kit with the first thing that is
/// asked of it, and lets it follow the guest who is signed in. For another sandbox it waits until
/// what runs has come to its end, and then gives the kit that sandbox's services. Everything begins
/// on the main queue, and each thing is an operation of the sandbox's journal; what is asked for
/// while another runs belongs to the same one.
///
/// Threading: any, but for `completeFinishedOperations`. Installs the sandbox as the host of the
/// process.
class App : public std::enable_shared_from_this<App> {
 public:
  /// How an operation came out.
  struct Outcome {
    std::int64_t operation = 0;
    /// Why nothing was done; missing otherwise.
    std::optional<HttpError> refusal;
    /// How many times the kit has called the completion, and what it brought last.
    int completions = 0;
    std::shared_ptr<HLVSDKCreditCard> card = {};
    ErrorPtr error = {};
  };
  using WorldPtr = std::shared_ptr<World>;
  /// Called once on the main thread, when the kit has answered or nothing more can happen.
  using Done = std::function<void(const Outcome&)>;

  /// The registry outlives the app.
  explicit App(Registry& registry);
  ~App();

  void signIn(const WorldPtr& world, const std::string& email, Done done);
  void signOut(const WorldPtr& world, Done done);
  void setReachable(const WorldPtr& world, bool reachable, Done done);
  /// Which lets the kit synchronise.
  void enterForeground(const WorldPtr& world, Done done);
  /// Everything is as at the beginning, with nobody signed in.
  void reset(const WorldPtr& world, Done done);
  void add(const WorldPtr& world, std::shared_ptr<sandbox::EnteredCard> card,
           std::shared_ptr<sandbox::EnteredAddress> address, Done done);
  void update(const WorldPtr& world, const std::string& ID,
              std::shared_ptr<sandbox::EnteredAddress> address, Done done);
  void remove(const WorldPtr& world, const std::string& ID, Done done);

  /// Replies to those whose operation has come to its end. To be called on the main thread after
  /// each pass of the main queue.
  void completeFinishedOperations();

 private:
  class Running;
  using RunningPtr = std::shared_ptr<Running>;
  /// Throws `HttpError` where it cannot be.
  using Start = std::function<void(const RunningPtr&)>;
  struct Waiting {
    WorldPtr world;
    std::string name;
    Start start;
    Done done;
  };

  void run(const WorldPtr& world, const std::string& name, Start start, Done done);
  void startWaiting();
  void begin(const Waiting& operation);
  /// Makes another sandbox the host.
  void switchTo(const WorldPtr& world);
  /// Enables the kit, or gives it the services of a sandbox that it does not know yet.
  void launch();
  HLVSDKGuestCardCompletion completionOf(const RunningPtr& running, const std::string& what) const;
  std::string useCaseOf(const std::string& ID) const;

  Registry& registry_;
  // On the main thread only.
  WorldPtr world_;
  std::shared_ptr<sandbox::Sandbox> sandbox_;
  std::deque<Waiting> waiting_;
  std::vector<RunningPtr> running_;
  bool hasLaunched_ = false;
  std::unique_ptr<Observation> followsGuest_;
};

}  // namespace hlv::server
