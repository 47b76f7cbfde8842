#include "Server/Console/App.h"

#include <algorithm>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Platform/Platform.h"
#include "Public/HLVSDKPayleven.h"
#include "Sandbox/App/Enabling.h"
#include "Values/Send.h"

namespace hlv::server {
namespace {

std::shared_ptr<HLVSDKGuest> signedInGuest() {
  auto guest = HLVSDKGuest::currentGuest();
  if (!guest) throw HttpError(409, "not-signed-in", "Nobody is signed in.");
  return guest;
}

}  // namespace

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

void App::signIn(const WorldPtr& world, const std::string& email, Done done) {
  const auto start = [this, email] {
    return announce([&] {
      const auto signedIn = sandbox_->signIn(email);
      if (!signedIn) throw HttpError(422, "address-refused", signedIn.problem());
    });
  };
  run(world, "sign in", start, std::move(done));
}

void App::signOut(const WorldPtr& world, Done done) {
  const auto start = [this] {
    sandbox_->signOut();
    return CallPtr();
  };
  run(world, "sign out", start, std::move(done));
}

void App::setReachable(const WorldPtr& world, bool reachable, Done done) {
  const auto start = [this, reachable] {
    if (reachable && !sandbox_->isReachable()) {
      return announce([this] { sandbox_->setReachable(true); });
    }
    sandbox_->setReachable(reachable);
    return CallPtr();
  };
  run(world, reachable ? "network on" : "network off", start, std::move(done));
}

void App::enterForeground(const WorldPtr& world, Done done) {
  const auto start = [this] { return announce([this] { sandbox_->enterForeground(); }); };
  run(world, "foreground", start, std::move(done));
}

void App::reset(const WorldPtr& world, Done done) {
  const auto start = [this] {
    sandbox_->reset();
    return CallPtr();
  };
  run(world, "reset", start, std::move(done));
}

void App::add(const WorldPtr& world, std::shared_ptr<sandbox::EnteredCard> card,
              std::shared_ptr<sandbox::EnteredAddress> address, Done done) {
  const auto start = [this, card = std::move(card), address = std::move(address)] {
    return app_->add(card, address, signedInGuest());
  };
  run(world, "add", start, std::move(done));
}

void App::update(const WorldPtr& world, const std::string& ID,
                 std::shared_ptr<sandbox::EnteredAddress> address, Done done) {
  const auto start = [this, ID, address = std::move(address)] {
    return app_->update(ID, address, signedInGuest());
  };
  run(world, "update", start, std::move(done));
}

void App::remove(const WorldPtr& world, const std::string& ID, Done done) {
  const auto start = [this, ID] {
    const auto guest = signedInGuest();
    const auto cards = sandbox_->backendCards();
    const auto* card = sandbox::findCard(cards, ID);
    return app_->remove(ID, card ? card->useCase : "default", guest);
  };
  run(world, "delete", start, std::move(done));
}

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

void App::run(const WorldPtr& world, const std::string& name, Start start, Done done) {
  Platform::current()->mainQueue()->async(
      [weak = weak_from_this(),
       operation = Waiting{world, name, std::move(start), std::move(done)}]() mutable {
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
    running->call = operation.start();
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

App::CallPtr App::announce(const std::function<void()>& post) {
  const auto before = lastEvent();
  post();
  const auto reason = reasonForNoSynchronisation(before);
  if (!reason.empty()) sandbox_->journal().record("kit", "kit", "no synchronisation: " + reason);
  return nullptr;
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
