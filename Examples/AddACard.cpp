// An app that embeds the kit: it signs a guest in, adds a test card and prints what both sides
// have.
#include <cstdio>

#include "Sandbox/Cards/TestCards.h"
#include "SandboxApp.h"

int main(int argc, char** argv) {
  const auto sandbox = startApp(argc, argv);
  if (!sandbox) return 2;

  // Add a card, and pump the main queue until the kit calls back.
  const auto card = hlv::sandbox::EnteredCard::make(hlv::sandbox::findTestCard("visa")->fields);
  bool answered = false;
  bool succeeded = false;
  hlv::HLVSDKPaymentManager::make()->addPaymentInstrument(
      card, nullptr, hlv::HLVSDKGuest::currentGuest(),
      [&](const auto&, const auto& added, const hlv::ErrorPtr& error) {
        answered = true;
        succeeded = added && !error;
        if (error) std::printf("failed: %s\n", error->localizedDescription()->c_str());
      });
  hlv::DefaultPlatform::shared()->runUntil([&] { return answered; });

  for (const auto& stored : sandbox->backendCards()) {
    std::printf("backend:  %s .. %s\n", stored.brand.c_str(), stored.lastFourDigits.c_str());
  }
  for (const auto& instrument : sandbox->providerInstruments()) {
    std::printf("provider: %s %s\n", instrument.brand.c_str(), instrument.maskedPan.c_str());
  }
  return succeeded ? 0 : 1;
}
