// Clients that each keep a guest's cards with a kit of their own, in a sandbox of their own, all at
// once: whatever one finds that is not its own is counted.
// Usage: paylevenkit-load-clients BACKEND PROVIDER CLIENTS SECONDS
// Prints {"lives", "requests", "seconds", "crossed"} in JSON. BACKEND is what the sandboxes name.
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <iostream>
#include <thread>
#include <vector>

#include "Client/Sandboxes.h"
#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Platform/Default/DefaultPlatform.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"
#include "Sandbox/Cards/TestCards.h"
#include "Sandbox/Records/EnteredAddress.h"

namespace {

using hlv::NullableString;
using hlv::sandbox::EnteredAddress;
using hlv::sandbox::EnteredCard;
using CardPtr = std::shared_ptr<hlv::HLVSDKCreditCard>;
using Clock = std::chrono::steady_clock;

/// The requests of one life: a session, five and four for the cards, one for the address, two for
/// the deletion, three lists and a removal for the synchronisation, two to look, an orphan and a
/// reset.
constexpr int requestsOfALife = 20;

class Client {
 public:
  explicit Client(const std::string& providerURL)
      : sandbox_(hlv::client::TestSandbox::create(providerURL)) {}

  /// Once a host is installed.
  void start() {
    const auto provider = sandbox_.host()->inAppClient();
    provider->registerWithAPIKey("key");
    manager_ = hlv::HLVSDKPaylevenPaymentInstrumentManager::initWithAPIManager(
        sandbox_.host()->apiManager(), provider, sandbox_.host()->reachability());
    synchronizer_ = hlv::HLVSDKPaylevenPaymentInstrumentsSynchronizer::initWithAPIManager(
        sandbox_.host()->apiManager(), provider);
  }

  const std::shared_ptr<hlv::client::RemoteHost>& host() const { return sandbox_.host(); }

  /// Whether everything was this client's own.
  bool live(int number) {
    const auto email = "guest" + std::to_string(number) + "@example.com";
    sandbox_.signIn(email);
    const auto guest = host()->currentGuest();
    const auto first = add("visa", "default", guest);
    const auto second = add("amex", "business", guest);
    if (!first || !second) return false;
    hlv::sandbox::AddressFields address;
    address.street = "Street 1";
    manager_->updatePaymentInstrument(first->halvoID(), EnteredAddress::make(address), guest,
                                      completing());
    finish();
    manager_->deletePaymentInstrumentWithID(
        second->halvoID(), "business", guest,
        [done = completing()](const auto& owner, const auto& error) {
          done(owner, nullptr, error);
        });
    finish();
    const auto tester = host()->tester();
    const auto orphan =
        tester->addOrphanInstrument(hlv::sandbox::findTestCard("mastercard")->fields);
    synchronizer_->synchronizePaymentInstrumentsForGuest(
        guest, [done = completing()](bool, const auto& error) { done(nullptr, nullptr, error); });
    finish();
    // What the synchroniser removes it does not wait for.
    while (!host()->isQuiet()) std::this_thread::yield();
    const auto sides = host()->sides();
    tester->reset();
    return orphan && !sides.error && guest->email() == email && sides.backend.size() == 1 &&
           sides.provider.size() == 1 && sides.backend[0].halvoID == first->halvoID() &&
           sides.backend[0].billingAddress.street == "Street 1" &&
           sides.provider[0].identifier == sides.backend[0].externalIdentifier;
  }

 private:
  CardPtr add(const char* name, const char* useCase,
              const std::shared_ptr<hlv::HLVSDKGuest>& guest) {
    auto fields = hlv::sandbox::findTestCard(name)->fields;
    fields.useCase = useCase;
    manager_->addPaymentInstrument(EnteredCard::make(fields), EnteredAddress::make({}), guest,
                                   completing());
    return finish();
  }

  hlv::HLVSDKGuestCardCompletion completing() {
    const auto promise = std::make_shared<std::promise<CardPtr>>();
    finished_ = promise->get_future();
    return [promise](const auto&, const CardPtr& card, const auto&) { promise->set_value(card); };
  }
  CardPtr finish() { return finished_.get(); }

  const hlv::client::TestSandbox sandbox_;
  std::shared_ptr<hlv::HLVSDKPaylevenPaymentInstrumentManager> manager_;
  std::shared_ptr<hlv::HLVSDKPaylevenPaymentInstrumentsSynchronizer> synchronizer_;
  std::future<CardPtr> finished_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::cerr << "Usage: paylevenkit-load-clients BACKEND PROVIDER CLIENTS SECONDS\n";
    return 2;
  }
  std::vector<std::unique_ptr<Client>> clients;
  for (int i = 0; i < std::atoi(argv[3]); ++i) clients.push_back(std::make_unique<Client>(argv[2]));
  // What the kit asks of a host beside the two services is the same at each.
  hlv::Host::install(clients.front()->host());
  for (const auto& client : clients) client->start();
  const auto begun = Clock::now();
  const auto end = begun + std::chrono::seconds(std::atoi(argv[4]));
  std::atomic<int> lives{0};
  std::atomic<int> crossed{0};
  std::atomic<std::size_t> running{clients.size()};
  const auto platform = hlv::DefaultPlatform::shared();
  const auto mainQueue = platform->mainQueue();
  std::vector<std::thread> threads;
  for (const auto& client : clients) {
    threads.emplace_back([&, client = client.get()] {
      for (int number = 0; Clock::now() < end; ++number) {
        if (!client->live(number)) ++crossed;
        ++lives;
      }
      --running;
      mainQueue->async([] {});
    });
  }
  platform->runUntil([&] { return running == 0; });
  for (auto& thread : threads) thread.join();
  const std::chrono::duration<double> seconds = Clock::now() - begun;
  std::cout << "{\"lives\": " << lives << ", \"requests\": " << lives * requestsOfALife
            << ", \"seconds\": " << seconds.count() << ", \"crossed\": " << crossed << "}\n";
  hlv::Host::install(nullptr);
  return crossed == 0 ? 0 : 1;
}
