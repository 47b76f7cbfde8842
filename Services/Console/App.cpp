#include "Services/Console/App.h"

#include <algorithm>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Platform/Default/DefaultPlatform.h"
#include "Public/HLVSDKPayleven.h"
#include "Public/HLVSDKPaylevenKitConfiguration.h"
#include "Public/HLVSDKPaymentManager.h"
#include "Sandbox/AppConfiguration.h"
#include "Sandbox/ToldCall.h"

namespace hlv::services {
namespace {

void enableKit() {
  const auto configuration = HLVSDKPaylevenKitConfiguration::configurationWithBlock(
      [](const std::shared_ptr<HLVSDKMutablePaylevenKitConfiguration>& mutableConfiguration) {
        mutableConfiguration->setPaymentKey("paylevenkit-console-key");
      });
  using sandbox::AppConfiguration;
  HLVSDKPayleven::enableWithConfiguration(std::make_shared<AppConfiguration>(List<HLVSDKKitEntry>{
      std::make_shared<AppConfiguration::Entry>(HLVSDKPayleven::kitClass(), configuration)}));
}

std::shared_ptr<HLVSDKGuest> signedInGuest() {
  auto guest = HLVSDKGuest::currentGuest();
  if (!guest) throw Refused{409, "not-signed-in", "Nobody is signed in."};
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

  void refuse(const Refused& refusal) {
    const std::lock_guard lock(mutex_);
    outcome_.refusal = refusal;
  }
  void hear(const std::shared_ptr<HLVSDKCreditCard>& card, const ErrorPtr& error) {
    const std::lock_guard lock(mutex_);
    ++outcome_.answers;
    outcome_.card = card;
    outcome_.error = error;
  }
  bool hasEnded() const {
    const std::lock_guard lock(mutex_);
    return outcome_.refusal || outcome_.answers > 0;
  }
  void tell() const {
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

App::App(std::shared_ptr<sandbox::Sandbox> sandbox) : sandbox_(std::move(sandbox)) {
  Host::install(sandbox_->host());
}

void App::signIn(const std::string& email, Done done) {
  const auto start = [this, email](const RunningPtr&) {
    const auto problem = sandbox_->signIn(email);
    if (!problem.empty()) throw Refused{422, "address-refused", problem};
  };
  run("sign in", start, std::move(done));
}

void App::signOut(Done done) {
  run(
      "sign out", [this](const RunningPtr&) { sandbox_->signOut(); }, std::move(done));
}

void App::setReachable(bool reachable, Done done) {
  const auto start = [this, reachable](const RunningPtr&) { sandbox_->setReachable(reachable); };
  run(reachable ? "network on" : "network off", start, std::move(done));
}

void App::enterForeground(Done done) {
  run(
      "foreground", [this](const RunningPtr&) { sandbox_->enterForeground(); }, std::move(done));
}

void App::reset(Done done) {
  run(
      "reset", [this](const RunningPtr&) { sandbox_->reset(); }, std::move(done));
}

void App::add(std::shared_ptr<sandbox::EnteredCard> card,
              std::shared_ptr<sandbox::EnteredAddress> address, Done done) {
  const auto start = [this, card = std::move(card),
                      address = std::move(address)](const RunningPtr& running) {
    const auto guest = signedInGuest();
    HLVSDKPaymentManager::make()->addPaymentInstrument(card, address, guest,
                                                       heardBy(running, "addPaymentInstrument"));
  };
  run("add", start, std::move(done));
}

void App::update(const std::string& ID, std::shared_ptr<sandbox::EnteredAddress> address,
                 Done done) {
  const auto start = [this, ID, address = std::move(address)](const RunningPtr& running) {
    const auto guest = signedInGuest();
    HLVSDKPaymentManager::make()->updatePaymentInstrument(
        ID, address, guest, heardBy(running, "updatePaymentInstrument"));
  };
  run("update", start, std::move(done));
}

void App::remove(const std::string& ID, Done done) {
  const auto start = [this, ID](const RunningPtr& running) {
    const auto guest = signedInGuest();
    HLVSDKPaymentManager::make()->deletePaymentInstrumentWithID(
        ID, useCaseOf(ID), guest,
        [heard = heardBy(running, "deletePaymentInstrumentWithID")](
            const std::shared_ptr<HLVSDKGuest>& updated, const ErrorPtr& error) {
          heard(updated, nullptr, error);
        });
  };
  run("delete", start, std::move(done));
}

void App::look() {
  const auto platform = DefaultPlatform::shared();
  // A request that goes out between the first two looks shows in the third.
  const bool isSettled = sandbox_->isQuiet() && platform->isIdle() && sandbox_->isQuiet();
  const auto ended = std::stable_partition(
      running_.begin(), running_.end(),
      [&](const RunningPtr& running) { return !isSettled && !running->hasEnded(); });
  const std::vector<RunningPtr> atTheirEnd(ended, running_.end());
  running_.erase(ended, running_.end());
  for (const auto& running : atTheirEnd) running->tell();
}

void App::run(const std::string& name, Start start, Done done) {
  Platform::current()->mainQueue()->async(
      [weak = weak_from_this(), name, start = std::move(start), done = std::move(done)] {
        const auto app = weak.lock();
        if (!app) return;
        auto& all = app->running_;
        try {
          const auto operation =
              all.empty() ? app->sandbox_->journal().beginOperation(name) : all.back()->operation();
          all.push_back(std::make_shared<Running>(operation, done));
        } catch (const std::runtime_error& failure) {
          return done({.refusal = Refused{500, "store-failed", failure.what()}});
        }
        const auto running = all.back();
        try {
          app->launchForGuest();
          start(running);
          app->launchForGuest();
        } catch (const Refused& refusal) {
          running->refuse(refusal);
        } catch (const std::runtime_error& failure) {
          running->refuse({500, "store-failed", failure.what()});
        }
      });
}

void App::launchForGuest() {
  const auto email = sandbox_->signedInEmail();
  if (!email || email == launchedFor_) return;
  launchedFor_ = email;
  sandbox_->journal().record("app", "kit", "enableWithConfiguration");
  HLVSDKPayleven::resetSharedInstance();
  enableKit();
}

HLVSDKGuestCardCompletion App::heardBy(const RunningPtr& running, const std::string& what) const {
  return sandbox::toldCall(
      sandbox_, what,
      [running](const std::shared_ptr<HLVSDKGuest>&, const std::shared_ptr<HLVSDKCreditCard>& card,
                const ErrorPtr& error) { running->hear(card, error); });
}

std::string App::useCaseOf(const std::string& ID) const {
  for (const auto& card : sandbox_->backendCards()) {
    if (card.halvoID == ID) return card.useCase;
  }
  return "default";
}

}  // namespace hlv::services
