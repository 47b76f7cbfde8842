// The kit as an app has it: enabled, with five operations to perform.
//
// Threading: the main thread.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <thread>
#include <utility>

#include "Benchmarks/Support/Records.h"
#include "Public/HLVSDKPaylevenKit.h"

namespace hlv::bench {

/// What an app gives to the kit to enable it.
inline std::shared_ptr<HLVSDKConfiguration> makeConfiguration() {
  return HLVSDKConfiguration::make(List<HLVSDKKitEntry>{HLVSDKKitEntry::make(
      HLVSDKPayleven::kitClass(),
      HLVSDKPaylevenKitConfiguration::configurationWithBlock(
          [](const auto& configuration) { configuration->setPaymentKey("key"); }))});
}

/// One at a time, since it installs the platform and the host of the process.
class EnabledKit {
 public:
  EnabledKit(std::shared_ptr<Platform> platform, std::shared_ptr<Host> host, Records& records)
      : records_(records) {
    // Before its first thread a process counts shared references without atomics. An app has
    // threads.
    std::thread([] {}).join();
    Platform::install(std::move(platform));
    Host::install(std::move(host));
    HLVSDKPayleven::enableWithConfiguration(makeConfiguration());
  }
  ~EnabledKit() {
    HLVSDKPayleven::resetSharedInstance();
    Host::install(nullptr);
    Platform::install(nullptr);
  }
  EnabledKit(const EnabledKit&) = delete;
  EnabledKit& operator=(const EnabledKit&) = delete;

  void addFirstCard() {
    payments_->addPaymentInstrument(records_.card, records_.address, records_.newGuest,
                                    countCard());
  }
  void addFurtherCard() {
    payments_->addPaymentInstrument(records_.card, records_.address, records_.guest, countCard());
  }
  void deleteCard() {
    payments_->deletePaymentInstrumentWithID(
        "card-2222", "default", records_.guest,
        [this](const auto& guest, const auto& error) { succeeded_ += guest && !error; });
  }
  void updateCard() {
    payments_->updatePaymentInstrument("card-2222", records_.address, records_.guest, countCard());
  }
  void synchronize() {
    HLVSDKPayleven::sharedInstance()
        ->paymentInstrumentsSynchronizer()
        ->synchronizePaymentInstrumentsForGuest(
            records_.guest,
            [this](bool success, const auto& error) { succeeded_ += success && !error; });
  }

  /// How many operations have reported success to the app. Failures are not counted.
  std::size_t succeeded() const { return succeeded_; }

  /// Runs the final step of a synchronisation on the main queue, so that one thread does it all.
  void synchronizeOnMainQueue() {
    std::dynamic_pointer_cast<HLVSDKPaylevenPaymentInstrumentsSynchronizer>(
        HLVSDKPayleven::sharedInstance()->paymentInstrumentsSynchronizer())
        ->setSynchronizationQueue(Platform::current()->mainQueue());
  }

 private:
  HLVSDKGuestCardCompletion countCard() {
    return [this](const auto& guest, const auto& card, const auto& error) {
      succeeded_ += guest && card && !error;
    };
  }

  Records& records_;
  const std::shared_ptr<HLVSDKPaymentManager> payments_ = HLVSDKPaymentManager::make();
  std::size_t succeeded_ = 0;
};

struct Operation {
  const char* name;
  void (*start)(EnabledKit&);
};

inline constexpr std::array<Operation, 5> operations = {
    {{"first-card", [](EnabledKit& kit) { kit.addFirstCard(); }},
     {"further-card", [](EnabledKit& kit) { kit.addFurtherCard(); }},
     {"delete", [](EnabledKit& kit) { kit.deleteCard(); }},
     {"update", [](EnabledKit& kit) { kit.updateCard(); }},
     {"synchronise", [](EnabledKit& kit) { kit.synchronize(); }}}};

}  // namespace hlv::bench
