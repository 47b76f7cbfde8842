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
#include "Sandbox/Sandbox.h"
#include "Server/Api/Registry.h"
#include "Server/Http/HttpError.h"

namespace hlv::sandbox::server {

/// Simulates an app over one sandbox at a time: the first operation starts it. For another sandbox
/// it waits until what runs has come to its end, and then starts the app anew. Everything begins on
/// the main queue, and each thing is an operation of the sandbox's journal; what is asked for while
/// another runs joins that one, whose name then holds both.
///
/// Threading: any, but for `completeFinishedOperations`. Installs the sandbox as the host of the
/// process.
class App : public std::enable_shared_from_this<App> {
 public:
  using SandboxPtr = std::shared_ptr<OpenSandbox>;
  using CallPtr = std::shared_ptr<const AppCall>;
  struct Operation;
  /// Called once on the main thread, when the kit has called back or nothing more can happen.
  using Done = std::function<void(const Operation&)>;
  /// Returns the call of the kit, or null where none is made. Throws `HttpError` where it cannot
  /// be. On the main thread.
  using Start = std::function<CallPtr(App&)>;
  struct Operation {
    SandboxPtr sandbox;
    std::string name;
    Done done;
    Start start;
    /// In the journal; 0 before it has begun.
    std::int64_t number = 0;
    CallPtr call = {};
    /// Why nothing was done; missing otherwise.
    std::optional<HttpError> refusal = {};
  };

  /// The registry outlives the app.
  explicit App(Registry& registry);
  ~App();

  void run(const SandboxPtr& sandbox, const std::string& name, Done done, Start start);

  // What an operation starts with.

  Sandbox& sandbox() { return *sandbox_; }
  const SimulatedApp& kit() const { return *app_; }
  /// Posts a notification by which the kit may begin a synchronisation, and records why if not.
  void announce(const std::function<void()>& post);

  /// Replies to those whose operation has come to its end. To be called on the main thread after
  /// each pass of the main queue.
  void completeFinishedOperations();

 private:
  using OperationPtr = std::shared_ptr<Operation>;

  void startWaiting();
  void begin(const OperationPtr& operation);
  /// Ends the app, and makes one over another sandbox.
  void switchTo(const SandboxPtr& sandbox);
  /// Empty where one began after the event `before`.
  std::string reasonForNoSynchronisation(std::int64_t before) const;

  Registry& registry_;
  // On the main thread only.
  SandboxPtr current_;
  std::shared_ptr<Sandbox> sandbox_;
  std::deque<OperationPtr> waiting_;
  std::vector<OperationPtr> running_;
  std::unique_ptr<SimulatedApp> app_;
};

}  // namespace hlv::sandbox::server
