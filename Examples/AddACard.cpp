// An app that embeds the kit: it signs a guest in, adds a test card and prints what both sides
// have.
#include <cstdio>
#include <filesystem>
#include <memory>

#include "KitConfiguration.h"
#include "Public/HLVSDKPaylevenKit.h"
#include "Sandbox/Sandbox.h"
#include "Sandbox/TestCards.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: AddACard STORE\n");
    return 2;
  }

  // 1. Choose a host. A phone app installs the real one; here it is the sandbox.
  hlv::sandbox::SandboxOptions options;
  options.storePath = argv[1];
  const auto opened = hlv::sandbox::Sandbox::open(options);
  if (!opened.sandbox) {
    std::fprintf(stderr, "%s\n", opened.problem.c_str());
    return 2;
  }
  hlv::Host::install(opened.sandbox->host());
  opened.sandbox->signIn("guest@example.com");

  // 2. Enable the kit, once.
  hlv::HLVSDKPayleven::enableWithConfiguration(
      std::make_shared<HostConfiguration>("a-payment-key"));

  // 3. Add a card, and pump the main queue until the answer is there.
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

  for (const auto& stored : opened.sandbox->backendCards()) {
    std::printf("backend:  %s .. %s\n", stored.brand.c_str(), stored.lastFourDigits.c_str());
  }
  for (const auto& instrument : opened.sandbox->providerInstruments()) {
    std::printf("provider: %s %s\n", instrument.brand.c_str(), instrument.maskedPan.c_str());
  }
  return succeeded ? 0 : 1;
}
