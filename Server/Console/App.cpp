#include "Server/Console/App.h"

#include <algorithm>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Platform/Platform.h"
#include "Public/HLVSDKPayleven.h"
#include "Values/Send.h"

namespace hlv::sandbox::server {

namespace {

bool hasEnded(const App::Operation& operation) {
  return operation.refusal || (operation.call && operation.call->outcome().completions > 0);
}

}  // namespace

App::App(Registry& registry) : registry_(registry) {}

App::~App() = default;

void App::completeFinishedOperations() {
  if (running_.empty()) return;
  const bool isSettled = app_->isSettled();
  const auto ended = std::stable_partition(
      running_.begin(), running_.end(),
      [&](const OperationPtr& running) { return !isSettled && !hasEnded(*running); });
  const std::vector<OperationPtr> atTheirEnd(ended, running_.end());
  running_.erase(ended, running_.end());
  for (const auto& operation : atTheirEnd) operation->done(*operation);
  startWaiting();
}

void App::run(const SandboxPtr& sandbox, const std::string& name, Done done, Start start) {
  const auto operation =
      std::make_shared<Operation>(Operation{sandbox, name, std::move(done), std::move(start)});
  Platform::current()->mainQueue()->async([weak = weak_from_this(), operation] {
    const auto app = weak.lock();
    if (!app) return;
    app->waiting_.push_back(operation);
    app->startWaiting();
  });
}

void App::startWaiting() {
  while (!waiting_.empty()) {
    if (waiting_.front()->sandbox != current_ && !running_.empty()) return;
    const auto operation = std::move(waiting_.front());
    waiting_.pop_front();
    begin(operation);
    // Its end is looked for after the next pass, and it may have posted nothing itself.
    Platform::current()->mainQueue()->async([] {});
  }
}

void App::begin(const OperationPtr& operation) {
  try {
    if (operation->sandbox != current_) switchTo(operation->sandbox);
    auto& journal = sandbox_->journal();
    if (!running_.empty()) journal.joinOperation(operation->name);
    operation->number =
        running_.empty() ? journal.beginOperation(operation->name) : running_.back()->number;
    running_.push_back(operation);
    if (!SimulatedApp::kitIsEnabled()) {
      journal.record("app", "kit", "enableWithConfiguration");
      enableKit(Enabling::normal);
    }
    operation->call = std::exchange(operation->start, nullptr)(*this);
  } catch (const HttpError& refusal) {
    operation->refusal = refusal;
  } catch (const Problem& failure) {
    operation->refusal = HttpError(507, "store-failed", failure.what());
  }
  if (operation->number == 0) operation->done(*operation);
}

void App::announce(const std::function<void()>& post) {
  const auto latest = sandbox_->journal().last(1);
  const auto before =
      latest.empty() || latest[0].events.empty() ? 0 : latest[0].events.back().number;
  post();
  const auto reason = reasonForNoSynchronisation(before);
  if (!reason.empty()) sandbox_->journal().record("kit", "kit", "no synchronisation: " + reason);
}

std::string App::reasonForNoSynchronisation(std::int64_t before) const {
  const auto kit = HLVSDKPayleven::sharedInstance();
  if (!sandbox_->signedInEmail()) return "not authorised";
  if (length(send(kit->currentGuest(), &HLVSDKGuest::paylevenToken)) == 0) return "no token";
  const auto current = sandbox_->journal().last(1);
  for (const auto& event : current.at(0).events) {
    const bool isStart = event.to == "log" && event.what.starts_with("Will start synchrozation");
    if (isStart && event.number > before) return "";
  }
  return "already synchronising";
}

void App::switchTo(const SandboxPtr& sandbox) {
  SandboxOptions options;
  options.storePath = registry_.pathOf(*sandbox);
  auto opened = Sandbox::over(sandbox->sharedStore(), options).value();
  app_.reset();
  current_ = sandbox;
  sandbox_ = std::move(opened);
  app_ = std::make_unique<SimulatedApp>(sandbox_, sandbox_->host(),
                                        [sandbox = sandbox_.get()] { return sandbox->isQuiet(); });
}

}  // namespace hlv::sandbox::server
