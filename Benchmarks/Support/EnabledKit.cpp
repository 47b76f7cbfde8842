#include "Benchmarks/Support/EnabledKit.h"

#include <thread>
#include <utility>

namespace hlv::bench {

std::shared_ptr<HLVSDKConfiguration> makeConfiguration() {
  return HLVSDKConfiguration::make(List<HLVSDKKitEntry>{HLVSDKKitEntry::make(
      HLVSDKPayleven::kitClass(),
      HLVSDKPaylevenKitConfiguration::configurationWithBlock(
          [](const auto& configuration) { configuration->setPaymentKey("key"); }))});
}

EnabledKit::EnabledKit(std::shared_ptr<Platform> platform, std::shared_ptr<Host> host,
                       Records& records)
    : records_(records) {
  // Before its first thread a process counts shared references without atomics. An app has threads.
  std::thread([] {}).join();
  Platform::install(std::move(platform));
  Host::install(std::move(host));
  HLVSDKPayleven::enableWithConfiguration(makeConfiguration());
}

EnabledKit::~EnabledKit() {
  HLVSDKPayleven::resetSharedInstance();
  Host::install(nullptr);
  Platform::install(nullptr);
}

void EnabledKit::addFirstCard() {
  payments_->addPaymentInstrument(records_.card, records_.address, records_.newGuest, countCard());
}

void EnabledKit::addFurtherCard() {
  payments_->addPaymentInstrument(records_.card, records_.address, records_.guest, countCard());
}

void EnabledKit::deleteCard() {
  payments_->deletePaymentInstrumentWithID(
      "card-2222", "default", records_.guest,
      [this](const auto& guest, const auto& error) { succeeded_ += guest && !error; });
}

void EnabledKit::updateCard() {
  payments_->updatePaymentInstrument("card-2222", records_.address, records_.guest, countCard());
}

void EnabledKit::synchronize() {
  HLVSDKPayleven::sharedInstance()
      ->paymentInstrumentsSynchronizer()
      ->synchronizePaymentInstrumentsForGuest(
          records_.guest,
          [this](bool success, const auto& error) { succeeded_ += success && !error; });
}

void EnabledKit::synchronizeOnMainQueue() {
  std::dynamic_pointer_cast<HLVSDKPaylevenPaymentInstrumentsSynchronizer>(
      HLVSDKPayleven::sharedInstance()->paymentInstrumentsSynchronizer())
      ->setSynchronizationQueue(Platform::current()->mainQueue());
}

HLVSDKGuestCardCompletion EnabledKit::countCard() {
  return [this](const auto& guest, const auto& card, const auto& error) {
    succeeded_ += guest && card && !error;
  };
}

}  // namespace hlv::bench
