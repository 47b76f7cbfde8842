// A guest's first card written by hand: the same services with the same arguments, and the same
// hops to the main thread, before the backend is asked and at the end. Nothing is checked and
// nothing can fail.
//
// Threading: as the network.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>

#include "Benchmarks/Support/BenchHost.h"
#include "Benchmarks/Support/Records.h"
#include "Platform/Default/DefaultPlatform.h"

namespace hlv::bench {

/// What it is made of lives longer.
class BareFirstCard {
 public:
  BareFirstCard(Platform& platform, BenchHost& host, Records& records)
      : platform_(platform), host_(host), records_(records) {}

  void addFirstCard() {
    const auto& card = *records_.card;
    const auto instrument = host_.makeCreditCardPaymentInstrument(
        card.pan(), card.expiryMonth(), card.expiryYear(), card.cvv(), card.cardHolder());
    host_.provider->createUserToken(
        records_.newGuest->email(), instrument, card.instrumentUseCaseString(),
        [this](const auto& token, auto) {
          host_.provider->getPaymentInstrumentsList(
              token, records_.card->instrumentUseCaseString(),
              [this, token](const auto& instruments, auto) {
                platform_.mainQueue()->async(
                    [this, token, found = instruments->back()] { registerBare(token, *found); });
              });
        });
  }

  /// How often that was done; counted on the main thread.
  std::size_t succeeded() const { return succeeded_; }

 private:
  struct Join {
    std::atomic<int> waiting{2};
    std::size_t* succeeded;
    std::shared_ptr<Queue> main;
    void leave() {
      if (--waiting == 0) main->async([succeeded = succeeded] { ++*succeeded; });
    }
  };

  void registerBare(const NullableString& token, const PLVCreditCardPaymentInstrument& found) {
    records_.card->setExternalIdentifier(found.identifier());
    const auto join = std::make_shared<Join>();
    join->succeeded = &succeeded_;
    join->main = platform_.mainQueue();
    const auto update = host_.makeUpdateGuestRequestInfo();
    update->setPaymentToken(token);
    host_.backend->updateCurrentGuestWithRequest(
        update, [join](const auto&, const auto&) { join->leave(); });
    const auto request =
        HLVSDKAddCreditCardRequestInfo::initWithPaymentInstrument(records_.card, records_.address);
    request->setProvider(0);
    host_.backend->addCreditCardForGuest(
        records_.newGuest, request,
        [join](const auto&, const auto&, const auto&) { join->leave(); });
  }

  Platform& platform_;
  BenchHost& host_;
  Records& records_;
  std::size_t succeeded_ = 0;
};

}  // namespace hlv::bench
