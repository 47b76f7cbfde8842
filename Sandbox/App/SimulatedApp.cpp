#include "Sandbox/App/SimulatedApp.h"

#include <utility>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Host/HLVSDKCoreKit/HLVSDKKitConfiguration.h"
#include "Platform/Default/DefaultPlatform.h"
#include "Public/HLVSDKPayleven.h"
#include "Public/HLVSDKPaylevenKitConfiguration.h"
#include "Public/HLVSDKPaymentManager.h"
#include "Sandbox/Calls/Summary.h"
#include "Values/Names.h"

namespace hlv::sandbox {
namespace {

void followGuest() {
  const auto kit = HLVSDKPayleven::sharedInstance();
  const auto guest = HLVSDKGuest::currentGuest();
  if (!kit || kit->currentGuest() == guest) return;
  kit->setCurrentGuest(guest);
  kit->setUpPaymentInstrumentsSynchronizer();
}

std::string descriptionOf(const std::shared_ptr<HLVSDKGuest>& guest,
                          const std::shared_ptr<HLVSDKCreditCard>& card, const ErrorPtr& error) {
  std::vector<std::string> parts;
  if (error) parts.push_back(summary(error));
  if (guest) parts.emplace_back("guest");
  if (card) parts.push_back(summary(card));
  return parts.empty() ? "nothing" : joined(parts);
}

class ConfigurationOfAnotherKit final : public HLVSDKKitConfiguration {
 public:
  std::shared_ptr<HLVSDKKitConfiguration> copyWithZone() const override {
    return std::make_shared<ConfigurationOfAnotherKit>();
  }
};

std::shared_ptr<Object> kitConfiguration(Enabling enabling) {
  if (enabling == Enabling::wrongClass) return std::make_shared<ConfigurationOfAnotherKit>();
  if (enabling == Enabling::noKey) {
    return HLVSDKPaylevenKitConfiguration::configurationWithBlock(nullptr);
  }
  return HLVSDKPaylevenKitConfiguration::configurationWithBlock(
      [](const std::shared_ptr<HLVSDKMutablePaylevenKitConfiguration>& configuration) {
        configuration->setPaymentKey("paylevenkit-sandbox-key");
      });
}

}  // namespace

AppCall::Outcome AppCall::outcome() const {
  const Lock lock(mutex_);
  return outcome_;
}

void AppCall::complete(const std::shared_ptr<HLVSDKGuest>& guest,
                       const std::shared_ptr<HLVSDKCreditCard>& card, const ErrorPtr& error) {
  const Lock lock(mutex_);
  outcome_ = {outcome_.completions + 1, guest, card, error};
}

SimulatedApp::SimulatedApp(std::shared_ptr<Sandbox> sandbox, std::shared_ptr<Host> host,
                           std::function<bool()> areServicesQuiet)
    : sandbox_(std::move(sandbox)),
      areServicesQuiet_(std::move(areServicesQuiet)),
      // Before the kit is enabled, so that this comes before the kit's own observer.
      followsGuest_([&] {
        Host::install(std::move(host));
        return Platform::current()->notificationCenter()->observe(
            kHLVSDKDidChangeAuthorizationStatusNotification(),
            [](const Notification&) { followGuest(); });
      }()) {}

SimulatedApp::~SimulatedApp() {
  HLVSDKPayleven::resetSharedInstance();
  Host::install(nullptr);
}

bool SimulatedApp::kitIsEnabled() { return HLVSDKPayleven::sharedInstance() != nullptr; }

std::shared_ptr<const AppCall> SimulatedApp::add(
    const std::shared_ptr<HLVSDKPaymentInstrument>& card,
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
    const std::shared_ptr<HLVSDKGuest>& guest) const {
  auto [call, completion] = begin("addPaymentInstrument");
  HLVSDKPaymentManager::make()->addPaymentInstrument(card, address, guest, std::move(completion));
  return call;
}

std::shared_ptr<const AppCall> SimulatedApp::update(
    const NullableString& ID, const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
    const std::shared_ptr<HLVSDKGuest>& guest) const {
  auto [call, completion] = begin("updatePaymentInstrument");
  HLVSDKPaymentManager::make()->updatePaymentInstrument(ID, address, guest, std::move(completion));
  return call;
}

std::shared_ptr<const AppCall> SimulatedApp::remove(
    const NullableString& ID, const NullableString& useCase,
    const std::shared_ptr<HLVSDKGuest>& guest) const {
  auto [call, completion] = begin("deletePaymentInstrumentWithID");
  HLVSDKPaymentManager::make()->deletePaymentInstrumentWithID(
      ID, useCase, guest,
      [completion = std::move(completion)](const std::shared_ptr<HLVSDKGuest>& updated,
                                           const ErrorPtr& error) {
        completion(updated, nullptr, error);
      });
  return call;
}

bool SimulatedApp::isSettled() const {
  // A request that goes out between the first two looks shows in the third. What it posts to the
  // main queue waits there, because this is the main thread.
  return areServicesQuiet_() && DefaultPlatform::shared()->isIdle() && areServicesQuiet_();
}

std::pair<std::shared_ptr<const AppCall>, HLVSDKGuestCardCompletion> SimulatedApp::begin(
    const std::string& what) const {
  sandbox_->journal().record("app", "kit", what);
  const auto call = std::make_shared<AppCall>();
  return {call, [call, what, weak = std::weak_ptr(sandbox_)](
                    const std::shared_ptr<HLVSDKGuest>& guest,
                    const std::shared_ptr<HLVSDKCreditCard>& card, const ErrorPtr& error) {
            if (const auto sandbox = weak.lock()) {
              sandbox->journal().record("kit", "app", what, descriptionOf(guest, card, error));
            }
            call->complete(guest, card, error);
          }};
}

void enableKit(Enabling enabling) {
  if (enabling == Enabling::none) return;
  List<HLVSDKKitEntry> kits;
  if (enabling != Enabling::noEntry) {
    kits.push_back(HLVSDKKitEntry::make(HLVSDKPayleven::kitClass(), kitConfiguration(enabling)));
  }
  HLVSDKPayleven::enableWithConfiguration(HLVSDKConfiguration::make(std::move(kits)));
}

}  // namespace hlv::sandbox
