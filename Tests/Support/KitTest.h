// The stage of every kit test: a scripted host, a manual platform, and one of everything.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Tests/Support/FakeRecords.h"
#include "Tests/Support/ManualPlatform.h"
#include "Tests/Support/ScriptedHost.h"

namespace hlv::testing {

/// How often a completion came, and its last error.
struct Outcome {
  int count = 0;
  ErrorPtr error;
};

class KitTest : public ::testing::Test, protected FakeObjects {
 protected:
  KitTest() {
    Platform::install(platform);
    Host::install(host);
    guest->cards = List<HLVSDKCreditCard>{storedCard};
  }
  ~KitTest() override {
    // Unanswered callbacks hold the kit, which holds the services that hold them.
    host->dropEverything();
    Host::install(nullptr);
    Platform::install(nullptr);
  }

  std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> makeManager() {
    return HLVSDKPaylevenPaymentInstrumentManager::initWithAPIManager(host->backend, host->provider,
                                                                      host->network);
  }

  HLVSDKGuestCardCompletion guestCard() {
    return [this](auto, auto, auto error) { outcome = {outcome.count + 1, error}; };
  }

  const std::shared_ptr<ManualPlatform> platform = std::make_shared<ManualPlatform>();
  const std::shared_ptr<ScriptedHost> host = std::make_shared<ScriptedHost>();
  ScriptedBackend& backend = *host->backend;
  ScriptedProvider& provider = *host->provider;

  Outcome outcome;
};

}  // namespace hlv::testing
