#include "Public/HLVSDKPayleven.h"

#include <cstdio>
#include <utility>

#include "Async/Once.h"
#include "Host/HLVSDKCoreKit/HLVSDKAsserts.h"
#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"
#include "Host/Halvo_Authentication/HLVSession.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Platform/Platform.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"
#include "Values/Send.h"

namespace hlv {
namespace {

Once& sharedOnce() {
  // Not destroyed at exit, when a thread may still enable the kit.
  static auto& once = *new Once;
  return once;
}

std::shared_ptr<HLVSDKKitEntry> lastEntryOf(HLVSDKKitClass kit,
                                            const std::shared_ptr<HLVSDKConfiguration>& host) {
  std::shared_ptr<HLVSDKKitEntry> last;
  for (const auto& entry :
       send(host, &HLVSDKConfiguration::kits).value_or(List<HLVSDKKitEntry>())) {
    if (send(entry, &HLVSDKKitEntry::kit) == kit) last = entry;
  }
  return last;
}

bool isActiveSessionAuthorized() {
  return send(HLVSession::activeSession(), &HLVSession::isAuthorized);
}

}  // namespace

HLVSDKKitClass HLVSDKPayleven::kitClass() {
  static const char identity = 0;
  return HLVSDKKitClass(&identity);
}

void HLVSDKPayleven::enableWithConfiguration(
    const std::shared_ptr<HLVSDKConfiguration>& configuration, HLVSDKKitClass receiver) {
  const auto entry = lastEntryOf(receiver, configuration);
  const auto kitConfiguration = std::dynamic_pointer_cast<HLVSDKPaylevenKitConfiguration>(
      send(entry, &HLVSDKKitEntry::configuration));
  if (!entry) {
    HLVSDKAsserts::handleAssertWithMessage(
        "Configuration must have HLVSDKPaylevenKit in kits array");
    return;
  }
  if (!kitConfiguration) {
    HLVSDKAsserts::handleAssertWithMessage(
        "Configuration for PaylevenKit must be kind of HLVSDKPaylevenKitConfiguration class");
    return;
  }
  if (!kitConfiguration->paymentKey()) {
    HLVSDKAsserts::handleAssertWithMessage("Configuration for PaylevenKit must have payment key");
    return;
  }
  sharedInstanceWithConfiguration(configuration, kitConfiguration);
}

std::shared_ptr<HLVSDKPayleven> HLVSDKPayleven::sharedInstance() {
  return processSlot<HLVSDKPayleven>().load();
}

std::shared_ptr<HLVSDKPayleven> HLVSDKPayleven::sharedInstanceWithConfiguration(
    const std::shared_ptr<HLVSDKConfiguration>& configuration,
    const std::shared_ptr<HLVSDKPaylevenKitConfiguration>& kitConfiguration) {
  if (Host::current()) {
    sharedOnce().run([&] {
      processSlot<HLVSDKPayleven>().store(initWithConfiguration(configuration, kitConfiguration));
    });
  } else if (!sharedInstance()) {
    std::fputs(
        "HLVSDKPaylevenKit: not enabled, because no host is installed. Call hlv::Host::install() "
        "and enable the kit again.\n",
        stderr);
  }
  return sharedInstance();
}

std::shared_ptr<HLVSDKPayleven> HLVSDKPayleven::initWithConfiguration(
    std::shared_ptr<HLVSDKConfiguration> configuration,
    std::shared_ptr<HLVSDKPaylevenKitConfiguration> kitConfiguration) {
  std::shared_ptr<HLVSDKPayleven> kit(new HLVSDKPayleven);
  kit->setConfiguration(std::move(configuration));
  kit->setKitConfiguration(std::move(kitConfiguration));
  kit->setCurrentGuest(HLVSDKGuest::currentGuest());
  kit->setUpPaymentManager();
  kit->setUpPaymentInstrumentsSynchronizer();
  kit->foregroundObservation_ =
      kit->observe(UIApplicationWillEnterForegroundNotification,
                   &HLVSDKPayleven::handleUIApplicationWillEnterForegroundNotification);
  kit->authorizationObservation_ =
      kit->observe(kHLVSDKDidChangeAuthorizationStatusNotification(),
                   &HLVSDKPayleven::handleAuthorizationDidChangeNotification);
  kit->reachabilityObservation_ =
      kit->observe(HLVSDKReachabilityDidChangeReachabilityStateNotification(),
                   &HLVSDKPayleven::handleReachabilityChangedNotification);
  return kit;
}

std::unique_ptr<Observation> HLVSDKPayleven::observe(const NullableString& name, Handler handler) {
  return Platform::current()->notificationCenter()->observe(
      name, [weakKit = weak_from_this(), handler](const Notification& notification) {
        send(weakKit.lock(), handler, notification);
      });
}

std::shared_ptr<HLVSDKPaymentInstrumentsSynchronizer>
HLVSDKPayleven::paymentInstrumentsSynchronizer() const {
  return paymentInstrumentsSynchronizer_.load();
}

void HLVSDKPayleven::setPaymentInstrumentsSynchronizer(
    std::shared_ptr<HLVSDKPaymentInstrumentsSynchronizer> synchronizer) {
  paymentInstrumentsSynchronizer_.store(std::move(synchronizer));
}

std::shared_ptr<HLVSDKPaymentInstrumentManager> HLVSDKPayleven::paymentInstrumentManager() const {
  return paymentInstrumentManager_.load();
}

void HLVSDKPayleven::setPaymentInstrumentManager(
    std::shared_ptr<HLVSDKPaymentInstrumentManager> manager) {
  paymentInstrumentManager_.store(std::move(manager));
}

std::shared_ptr<HLVSDKConfiguration> HLVSDKPayleven::configuration() const {
  return configuration_.load();
}

void HLVSDKPayleven::setConfiguration(std::shared_ptr<HLVSDKConfiguration> configuration) {
  configuration_.store(std::move(configuration));
}

std::shared_ptr<HLVSDKPaylevenKitConfiguration> HLVSDKPayleven::kitConfiguration() const {
  return kitConfiguration_.load();
}

void HLVSDKPayleven::setKitConfiguration(
    std::shared_ptr<HLVSDKPaylevenKitConfiguration> configuration) {
  kitConfiguration_.store(std::move(configuration));
}

std::shared_ptr<HLVSDKGuest> HLVSDKPayleven::currentGuest() const { return currentGuest_.load(); }

void HLVSDKPayleven::setCurrentGuest(std::shared_ptr<HLVSDKGuest> guest) {
  currentGuest_.store(std::move(guest));
}

void HLVSDKPayleven::setUpPaymentManager() {
  const auto client = PLVInAppClient::sharedInstance();
  send(client, &PLVInAppClient::registerWithAPIKey,
       send(kitConfiguration(), &HLVSDKPaylevenKitConfiguration::paymentKey));
  setPaymentInstrumentManager(HLVSDKPaylevenPaymentInstrumentManager::initWithAPIManager(
      HLVSDKAPIManager::manager(), client, HLVSDKReachability::sharedReachability()));
}

void HLVSDKPayleven::setUpPaymentInstrumentsSynchronizer() {
  setPaymentInstrumentsSynchronizer(
      HLVSDKPaylevenPaymentInstrumentsSynchronizer::initWithAPIManager(
          HLVSDKAPIManager::manager(), PLVInAppClient::sharedInstance()));
}

void HLVSDKPayleven::synchronizePaymentInstruments() {
  // In this order: an app that follows its guest sets the guest first, so a new synchroniser never
  // gets the guest before.
  const auto synchronizer = paymentInstrumentsSynchronizer();
  const auto guest = currentGuest();
  if (length(send(guest, &HLVSDKGuest::paylevenToken)) == 0) return;
  if (synchronizer) synchronizer->synchronizePaymentInstrumentsForGuest(guest);
}

void HLVSDKPayleven::handleUIApplicationWillEnterForegroundNotification(const Notification&) {
  if (isActiveSessionAuthorized()) synchronizePaymentInstruments();
}

void HLVSDKPayleven::handleAuthorizationDidChangeNotification(const Notification& notification) {
  const auto& isAuthorized =
      valueForKey(notification.userInfo, kHLVSDKNotificationUserInfoIsAuthorizedKey());
  if (isAuthorized.boolValue()) synchronizePaymentInstruments();
}

void HLVSDKPayleven::handleReachabilityChangedNotification(const Notification& notification) {
  if (!isActiveSessionAuthorized()) return;
  const auto stateUnder = [&](const NullableString& key) {
    return static_cast<std::uint8_t>(valueForKey(notification.userInfo, key).integerValue());
  };
  const auto state = stateUnder(HLVSDKReachabilityDidChangeReachabilityNotificationStateKey());
  const auto previousState =
      stateUnder(HLVSDKReachabilityDidChangeReachabilityNotificationPreviousStateKey());
  if (isReachable(state) && state != previousState) synchronizePaymentInstruments();
}

void HLVSDKPayleven::resetSharedInstance() {
  processSlot<HLVSDKPayleven>().store(nullptr);
  sharedOnce().reset();
}

void HLVSDKPayleven::setSharedInstance(std::shared_ptr<HLVSDKPayleven> instance) {
  processSlot<HLVSDKPayleven>().store(std::move(instance));
}

}  // namespace hlv
