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

/// How often a completion came, where, and what it brought last.
struct Outcome {
  int count = 0;
  bool onMainThread = false;
  bool success = false;
  NullableString token;
  std::shared_ptr<HLVSDKGuest> guest;
  std::shared_ptr<HLVSDKCreditCard> card;
  std::shared_ptr<PLVCreditCardPaymentInstrument> instrument;
  ErrorPtr error;
};

class KitTest : public ::testing::Test {
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
    return [this](auto toldGuest, auto toldCard, auto error) {
      note();
      outcome.guest = toldGuest;
      outcome.card = toldCard;
      outcome.error = error;
    };
  }
  HLVSDKGuestCompletion guestOnly() {
    return [this](auto toldGuest, auto error) { guestCard()(toldGuest, nullptr, error); };
  }
  HLVSDKPaylevenInstrumentCompletion tokenInstrument() {
    return [this](auto token, auto toldInstrument, auto error) {
      note();
      outcome.token = token;
      outcome.instrument = toldInstrument;
      outcome.error = error;
    };
  }
  HLVSDKSuccessCompletion succeeded() {
    return [this](bool success, auto error) {
      note();
      outcome.success = success;
      outcome.error = error;
    };
  }

  /// What the completion brought, in one line.
  std::string told() const {
    const auto name = [&](const void* object, const void* own, const char* ownName) {
      return object == nullptr ? std::string("none") : object == own ? ownName : "another";
    };
    return std::to_string(outcome.count) + "x guest " +
           name(outcome.guest.get(), guest.get(), "own") + ", card " +
           name(outcome.card.get(), backendCard.get(), "backend's") + ", error " +
           madeAs(outcome.error);
  }

  /// A trace of two loggers' lines, which must say the same.
  static std::string logged(int level, const std::string& rest) {
    const std::string line = " " + std::to_string(level) + " " + rest;
    return "remote" + line + "\nconsole" + line;
  }

  const std::shared_ptr<ManualPlatform> platform = std::make_shared<ManualPlatform>();
  const std::shared_ptr<ScriptedHost> host = std::make_shared<ScriptedHost>();
  ScriptedBackend& backend = *host->backend;
  ScriptedProvider& provider = *host->provider;

  const std::shared_ptr<FakeGuest> guest = std::make_shared<FakeGuest>();
  const std::shared_ptr<FakeGuest> updatedGuest = std::make_shared<FakeGuest>();
  const std::shared_ptr<FakeEnteredCard> card = std::make_shared<FakeEnteredCard>();
  const std::shared_ptr<FakeStoredCard> storedCard = std::make_shared<FakeStoredCard>();
  const std::shared_ptr<FakeStoredCard> backendCard = std::make_shared<FakeStoredCard>();
  const std::shared_ptr<FakeAddress> address = std::make_shared<FakeAddress>();
  const std::shared_ptr<FakeInstrument> instrument = std::make_shared<FakeInstrument>();
  Outcome outcome;

 private:
  void note() {
    ++outcome.count;
    outcome.onMainThread = platform->isMainThread();
  }
};

}  // namespace hlv::testing
