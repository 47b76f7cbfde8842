#include "Server/Console/App.h"

#include <algorithm>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Platform/Default/DefaultPlatform.h"
#include "Public/HLVSDKPayleven.h"
#include "Public/HLVSDKPaylevenKitConfiguration.h"
#include "Public/HLVSDKPaymentManager.h"
#include "Sandbox/RecordedCall.h"
#include "Values/Send.h"

namespace hlv::server {
namespace {

void enableKit() {
  const auto configuration = HLVSDKPaylevenKitConfiguration::configurationWithBlock(
      [](const std::shared_ptr<HLVSDKMutablePaylevenKitConfiguration>& mutableConfiguration) {
        mutableConfiguration->setPaymentKey("paylevenkit-console-key");
      });
  const auto entry = HLVSDKKitEntry::make(HLVSDKPayleven::kitClass(), configuration);
  HLVSDKPayleven::enableWithConfiguration(HLVSDKConfiguration::make(List<HLVSDKKitEntry>{entry}));
}

/// The kit keeps its guest, and a synchroniser that failed for one guest stays busy for the next.
void followGuest() {
  const auto kit = HLVSDKPayleven::sharedInstance();
  const auto guest = HLVSDKGuest::currentGuest();
  if (!kit || kit->currentGuest() == guest) return;
  kit->setCurrentGuest(guest);
  kit->setUpPaymentInstrumentsSynchronizer();
}

std::shared_ptr<HLVSDKGuest> signedInGuest() {
  auto guest = HLVSDKGuest::currentGuest();
  if (!guest) throw HttpError(409, "not-signed-in", "Nobody is signed in.");
  return guest;
}

}  // namespace

/// An operation that has not come to its end. The completion of an update comes on a service's
/// thread.
class App::Running {
 public:
  Running(std::int64_t operation, Done done) : done_(std::move(done)) {
    outcome_.operation = operation;
  }

  std::int64_t operation() const { return outcome_.operation; }

  void refuse(const HttpError& refusal) {
    const std::lock_guard lock(mutex_);
    outcome_.refusal = refusal;
  }
  void complete(const std::shared_ptr<HLVSDKCreditCard>& card, const ErrorPtr& error) {
    const std::lock_guard lock(mutex_);
    ++outcome_.completions;
    outcome_.card = card;
    outcome_.error = error;
  }
  bool hasEnded() const {
    const std::lock_guard lock(mutex_);
    return outcome_.refusal || outcome_.completions > 0;
  }
  void reply() const {
    const auto outcome = [this] {
      const std::lock_guard lock(mutex_);
      return outcome_;
    }();
    done_(outcome);
  }

 private:
  const Done done_;
  mutable std::mutex mutex_;
  Outcome outcome_;
};

App::App(Registry& registry) : registry_(registry) {}

App::~App() {
  if (!world_) return;
  HLVSDKPayleven::resetSharedInstance();
  Host::install(nullptr);
}

void App::signIn(const WorldPtr& world, const std::string& email, Done done) {
  const auto start = [this, email](const RunningPtr&) {
    announce([&] {
      const auto problem = sandbox_->signIn(email);
      if (!problem.empty()) throw HttpError(422, "address-refused", problem);
    });
  };
  run(world, "sign in", start, std::move(done));
}

void App::signOut(const WorldPtr& world, Done done) {
  run(
      world, "sign out", [this](const RunningPtr&) { sandbox_->signOut(); }, std::move(done));
}

void App::setReachable(const WorldPtr& world, bool reachable, Done done) {
  const auto start = [this, reachable](const RunningPtr&) {
    if (!reachable || sandbox_->isReachable()) return sandbox_->setReachable(reachable);
    announce([this] { sandbox_->setReachable(true); });
  };
  run(world, reachable ? "network on" : "network off", start, std::move(done));
}

void App::enterForeground(const WorldPtr& world, Done done) {
  const auto start = [this](const RunningPtr&) {
    announce([this] { sandbox_->enterForeground(); });
  };
  run(world, "foreground", start, std::move(done));
}

void App::reset(const WorldPtr& world, Done done) {
  run(
      world, "reset", [this](const RunningPtr&) { sandbox_->reset(); }, std::move(done));
}

void App::add(const WorldPtr& world, std::shared_ptr<sandbox::EnteredCard> card,
              std::shared_ptr<sandbox::EnteredAddress> address, Done done) {
  const auto start = [this, card = std::move(card),
                      address = std::move(address)](const RunningPtr& running) {
    const auto guest = signedInGuest();
    HLVSDKPaymentManager::make()->addPaymentInstrument(
        card, address, guest, completionOf(running, "addPaymentInstrument"));
  };
  run(world, "add", start, std::move(done));
}

void App::update(const WorldPtr& world, const std::string& ID,
                 std::shared_ptr<sandbox::EnteredAddress> address, Done done) {
  const auto start = [this, ID, address = std::move(address)](const RunningPtr& running) {
    const auto guest = signedInGuest();
    HLVSDKPaymentManager::make()->updatePaymentInstrument(
        ID, address, guest, completionOf(running, "updatePaymentInstrument"));
  };
  run(world, "update", start, std::move(done));
}

void App::remove(const WorldPtr& world, const std::string& ID, Done done) {
  const auto start = [this, ID](const RunningPtr& running) {
    const auto guest = signedInGuest();
    HLVSDKPaymentManager::make()->deletePaymentInstrumentWithID(
        ID, useCaseOf(ID), guest,
        [completion = completionOf(running, "deletePaymentInstrumentWithID")](
            const std::shared_ptr<HLVSDKGuest>& updated, const ErrorPtr& error) {
          completion(updated, nullptr, error);
        });
  };
  run(world, "delete", start, std::move(done));
}

void App::completeFinishedOperations() {
  if (running_.empty()) return;
  const auto platform = DefaultPlatform::shared();
  // A request that goes out between the first two looks shows in the third.
  const bool isSettled = sandbox_->isQuiet() && platform->isIdle() && sandbox_->isQuiet();
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
        running_.empty() ? journal.beginOperation(operation.name) : running_.back()->operation();
    running_.push_back(std::make_shared<Running>(number, operation.done));
  } catch (const std::runtime_error& failure) {
    return operation.done({.refusal = HttpError(507, "store-failed", failure.what())});
  }
  const auto running = running_.back();
  try {
    launch();
    operation.start(running);
  } catch (const HttpError& refusal) {
    running->refuse(refusal);
  } catch (const std::runtime_error& failure) {
    running->refuse(HttpError(507, "store-failed", failure.what()));
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
  auto opened = sandbox::Sandbox::over(world->sharedStore(), options);
  if (!opened.sandbox) throw std::runtime_error(opened.problem);
  world_ = world;
  sandbox_ = std::move(opened.sandbox);
  hasLaunched_ = false;
  Host::install(sandbox_->host());
}

void App::launch() {
  if (std::exchange(hasLaunched_, true)) return;
  if (const auto kit = HLVSDKPayleven::sharedInstance()) {
    sandbox_->journal().record("app", "kit", "setUpPaymentManager");
    kit->setCurrentGuest(HLVSDKGuest::currentGuest());
    kit->setUpPaymentManager();
    kit->setUpPaymentInstrumentsSynchronizer();
    return;
  }
  // Observes before the kit does, so that the kit's own observer finds the new guest.
  followsGuest_ = Platform::current()->notificationCenter()->observe(
      kHLVSDKDidChangeAuthorizationStatusNotification(),
      [](const Notification&) { followGuest(); });
  sandbox_->journal().record("app", "kit", "enableWithConfiguration");
  enableKit();
}

HLVSDKGuestCardCompletion App::completionOf(const RunningPtr& running,
                                            const std::string& what) const {
  return sandbox::recordedCall(
      sandbox_, what,
      [running](const std::shared_ptr<HLVSDKGuest>&, const std::shared_ptr<HLVSDKCreditCard>& card,
                const ErrorPtr& error) { running->complete(card, error); });
}

std::string App::useCaseOf(const std::string& ID) const {
  for (const auto& card : sandbox_->backendCards()) {
    if (card.halvoID == ID) return card.useCase;
  }
  return "default";
}

}  // namespace hlv::server
