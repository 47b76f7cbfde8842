// The app that the console plays. Private to the server.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Sandbox/App/SimulatedApp.h"
#include "Sandbox/Cards/EnteredCard.h"
#include "Sandbox/Records/EnteredAddress.h"
#include "Sandbox/Sandbox.h"
#include "Server/Api/Registry.h"
#include "Server/Http/HttpError.h"

namespace hlv::server {

/// Simulates an app over one sandbox at a time: the first operation starts it. For another sandbox
/// it waits until what runs has come to its end, and then starts the app anew. Everything begins on
/// the main queue, and each thing is an operation of the sandbox's journal; what is asked for while
/// another runs joins that one, whose name then holds both.
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
    sandbox::AppCall::Outcome call = {};
  };
  using WorldPtr = std::shared_ptr<World>;
  /// Called once on the main thread, when the kit has called back or nothing more can happen.
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
  struct Running;
  using RunningPtr = std::shared_ptr<Running>;
  using CallPtr = std::shared_ptr<const sandbox::AppCall>;
  /// Returns the call of the kit, or null where none is made. Throws `HttpError` where it cannot
  /// be.
  using Start = std::function<CallPtr()>;
  struct Waiting {
    WorldPtr world;
    std::string name;
    Start start;
    Done done;
  };

  void run(const WorldPtr& world, const std::string& name, Start start, Done done);
  void startWaiting();
  void begin(const Waiting& operation);
  /// Ends the app, and makes one over another sandbox.
  void switchTo(const WorldPtr& world);
  /// Posts a notification by which the kit may begin a synchronisation, and records why if not.
  CallPtr announce(const std::function<void()>& post);
  /// Empty where one began after the event `before`.
  std::string reasonForNoSynchronisation(std::int64_t before) const;
  std::int64_t lastEvent() const;

  Registry& registry_;
  // On the main thread only.
  WorldPtr world_;
  std::shared_ptr<sandbox::Sandbox> sandbox_;
  std::deque<Waiting> waiting_;
  std::vector<RunningPtr> running_;
  std::unique_ptr<sandbox::SimulatedApp> app_;
};

}  // namespace hlv::server
