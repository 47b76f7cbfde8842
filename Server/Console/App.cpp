#include "Server/Console/App.h"

#include <algorithm>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Platform/Platform.h"
#include "Public/HLVSDKPayleven.h"
#include "Sandbox/App/Enabling.h"
#include "Values/Send.h"

namespace hlv::server {
/// An operation that has not come to its end.
struct App::Running {
  std::int64_t operation;
  Done done;
  CallPtr call = {};
  std::optional<HttpError> refusal = {};

  bool hasEnded() const { return refusal || (call && call->outcome().completions > 0); }
  void reply() const {
    done({operation, refusal, call ? call->outcome() : sandbox::AppCall::Outcome()});
  }
};

App::App(Registry& registry) : registry_(registry) {}

App::~App() = default;

void App::completeFinishedOperations() {
  if (running_.empty()) return;
  const bool isSettled = app_->isSettled();
  const auto ended = std::stable_partition(
      running_.begin(), running_.end(),
      [&](const RunningPtr& running) { return !isSettled && !running->hasEnded(); });
  const std::vector<RunningPtr> atTheirEnd(ended, running_.end());
  running_.erase(ended, running_.end());
  for (const auto& running : atTheirEnd) running->reply();
  startWaiting();
}

void App::run(const WorldPtr& world, const std::string& name, Done done, Start start) {
  Platform::current()->mainQueue()->async(
      [weak = weak_from_this(),
       operation = Waiting{world, name, std::move(done), std::move(start)}]() mutable {
        const auto app = weak.lock();
        if (!app) return;
        app->waiting_.push_back(std::move(operation));
        app->startWaiting();
      });
}

void App::startWaiting() {
  while (!waiting_.empty()) {
    if (waiting_.front().world != world_ && !running_.empty()) return;
    const auto operation = std::move(waiting_.front());
    waiting_.pop_front();
    begin(operation);
    // Its end is looked for after the next pass, and it may have posted nothing itself.
    Platform::current()->mainQueue()->async([] {});
  }
}

void App::begin(const Waiting& operation) {
  try {
    if (operation.world != world_) switchTo(operation.world);
    auto& journal = sandbox_->journal();
    if (!running_.empty()) journal.joinOperation(operation.name);
    const auto number =
        running_.empty() ? journal.beginOperation(operation.name) : running_.back()->operation;
    running_.push_back(std::make_shared<Running>(Running{number, operation.done}));
  } catch (const Problem& failure) {
    return operation.done({.refusal = HttpError(507, "store-failed", failure.what())});
  }
  const auto running = running_.back();
  try {
    if (!sandbox::SimulatedApp::kitIsEnabled()) {
      sandbox_->journal().record("app", "kit", "enableWithConfiguration");
      sandbox::enableKit(sandbox::Enabling::normal);
    }
    running->call = operation.start(*this);
  } catch (const HttpError& refusal) {
    running->refusal = refusal;
  } catch (const Problem& failure) {
    running->refusal = HttpError(507, "store-failed", failure.what());
  }
}

std::int64_t App::lastEvent() const {
  const auto operations = sandbox_->journal().last(1);
  return operations.empty() || operations[0].events.empty() ? 0
                                                            : operations[0].events.back().number;
}

void App::announce(const std::function<void()>& post) {
  const auto before = lastEvent();
  post();
  const auto reason = reasonForNoSynchronisation(before);
  if (!reason.empty()) sandbox_->journal().record("kit", "kit", "no synchronisation: " + reason);
}

std::string App::reasonForNoSynchronisation(std::int64_t before) const {
  const auto kit = HLVSDKPayleven::sharedInstance();
  if (!sandbox_->signedInEmail()) return "not authorised";
  if (length(send(kit->currentGuest(), &HLVSDKGuest::paylevenToken)) == 0) return "no token";
  // There is none where the sandbox has just been reset.
  for (const auto& current : sandbox_->journal().last(1)) {
    for (const auto& event : current.events) {
      const bool isStart = event.to == "log" && event.what.starts_with("Will start synchrozation");
      if (isStart && event.number > before) return "";
    }
  }
  return "already synchronising";
}

void App::switchTo(const WorldPtr& world) {
  sandbox::SandboxOptions options;
  options.storePath = registry_.pathOf(*world);
  auto opened = sandbox::Sandbox::over(world->sharedStore(), options).value();
  app_.reset();
  world_ = world;
  sandbox_ = std::move(opened);
  app_ = std::make_unique<sandbox::SimulatedApp>(
      sandbox_, sandbox_->host(), [sandbox = sandbox_.get()] { return sandbox->isQuiet(); });
}

}  // namespace hlv::server
