// The smallest program that links the kit: it prints the version, and shows that calls before
// enabling are quiet.
#include <cstdio>

#include "Public/HLVSDKPaylevenKit.h"

int main() {
  bool answered = false;
  hlv::HLVSDKPaymentManager::make()->deletePaymentInstrumentWithID(
      "card", "default", nullptr, [&](auto, auto) { answered = true; });
  hlv::DefaultPlatform::shared()->runPending();

  std::printf("HLVSDKPaylevenKit %.1f, %s\n", HLVSDKPaylevenKitVersionNumber,
              answered ? "answered" : "not enabled");
  return answered ? 1 : 0;
}
