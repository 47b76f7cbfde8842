// An app in which one guest after another signs in. The kit keeps the guest whom it read when it
// was enabled; the app sets the next one.
#include <cstdio>
#include <string>

#include "Sandbox/Cards/TestCards.h"
#include "SandboxApp.h"

namespace {

/// What to set when the guest may have changed: first the guest, then a synchroniser. The old one
/// may still be at work for the guest before, and is busy for ever when that has failed.
void followGuest() {
  const auto kit = hlv::HLVSDKPayleven::sharedInstance();
  const auto guest = hlv::HLVSDKGuest::currentGuest();
  if (!kit || kit->currentGuest() == guest) return;
  kit->setCurrentGuest(guest);
  kit->setUpPaymentInstrumentsSynchronizer();
}

bool addCard() {
  const auto card = hlv::sandbox::EnteredCard::make(hlv::sandbox::findTestCard("visa")->fields);
  bool answered = false;
  bool succeeded = false;
  hlv::HLVSDKPaymentManager::make()->addPaymentInstrument(
      card, nullptr, hlv::HLVSDKGuest::currentGuest(),
      [&](const auto&, const auto& added, const auto& error) {
        answered = true;
        succeeded = added && !error;
      });
  hlv::DefaultPlatform::shared()->runUntil([&] { return answered; });
  return succeeded;
}

}  // namespace

int main(int argc, char** argv) {
  const auto sandbox = installSandbox(argc, argv);
  if (!sandbox) return 2;

  // Before the kit is enabled: observers are called in the order in which they began, so the kit's
  // own observer finds the new guest, and synchronises.
  const auto follows = hlv::Platform::current()->notificationCenter()->observe(
      hlv::kHLVSDKDidChangeAuthorizationStatusNotification(),
      [](const hlv::Notification&) { followGuest(); });
  enableKit();

  const std::string guests[] = {"one@example.com", "two@example.com"};
  for (const auto& email : guests) {
    if (!sandbox->signIn(email) || !addCard()) return 1;
    // Something goes wrong: the provider keeps an instrument that the backend does not know.
    const auto scenario = hlv::sandbox::Scenario::instrumentWithoutCard;
    if (!sandbox->tester()->makeScenario(scenario)) return 1;
    sandbox->signOut();
  }

  const auto platform = hlv::DefaultPlatform::shared();
  for (const auto& email : guests) {
    if (!sandbox->signIn(email)) return 1;
    platform->runUntil([&] { return sandbox->isQuiet() && platform->isIdle(); });
    const auto instruments = sandbox->providerInstruments().size();
    std::printf("%s: %zu cards, %zu instruments\n", email.c_str(), sandbox->backendCards().size(),
                instruments);
    if (instruments != sandbox->backendCards().size()) return 1;
  }
  return 0;
}
