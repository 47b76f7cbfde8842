#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "Async/Deliver.h"
#include "Async/Group.h"
#include "Async/OneShot.h"
#include "Host/HLVSDKCoreKit/HLVSDKAsserts.h"
#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"
#include "Host/Halvo_Meta/HLVUtilities.h"
#include "Platform/Platform.h"
#include "Public/Managers/KitErrors.h"
#include "Public/Managers/Log.h"
#include "Values/Mutex.h"
#include "Values/Secret.h"
#include "Values/Send.h"

namespace hlv {

using Synchronizer = HLVSDKPaylevenPaymentInstrumentsSynchronizer;
using Pair = HLVSDKPLVPaymentInstrument;
using Instrument = PLVCreditCardPaymentInstrument;
using Card = HLVSDKCreditCard;

namespace {

constexpr const char* synchronizeMethod =
    "-[HLVSDKPaylevenPaymentInstrumentsSynchronizer "
    "synchronizePaymentInstrumentsForGuest:completion:]";

constexpr char creationLabel[] =
    "com.halvo.sdk.HLVSDKPaylevenKit.HLVSDKPaylevenPaymentInstrumentsSynchronizer";
// Differs from the label above on purpose: it marks a queue that was made late.
constexpr char fallbackLabel[] = "com.halvo.sdk.halvoSDK.HLVSDKPaymentManager.Synchronization";

/// Gathers the provider's lists of one fetch; they may come on several threads at the same time.
class ProviderLists {
 public:
  void take(const NullableList<Instrument>& instruments, const NullableString& useCase) {
    if (!instruments) return;
    const Lock lock(mutex_);
    pairs_.reserve(pairs_.size() + instruments->size());
    for (const auto& instrument : *instruments) {
      HLVUtilities::array(pairs_, Pair::initWithPaymentInstrument(instrument, useCase));
    }
  }

  void fail(ErrorPtr error) {
    const Lock lock(mutex_);
    error_ = std::move(error);
  }

  /// Once every reply has come.
  void reportTo(const HLVSDKPLVPaymentInstrumentsCompletion& completion) HLV_AFTER_ALL_WRITERS {
    if (!completion) return;
    if (error_) {
      completion(std::nullopt, error_);
    } else {
      completion(std::move(pairs_), nullptr);
    }
  }

 private:
  Mutex mutex_;
  List<Pair> pairs_ HLV_GUARDED_BY(mutex_);
  ErrorPtr error_ HLV_GUARDED_BY(mutex_);
};

}  // namespace

/// What the two fetches of one synchronisation bring, and whom to report to. Each fetch writes its
/// own list, and either may write the error.
struct Synchronizer::Run {
  std::shared_ptr<HLVSDKGuest> guest;
  HLVSDKSuccessCompletion completion;
  List<Pair> providerInstruments;
  NullableList<Card> guestCards = List<Card>();

  void fail(ErrorPtr newError) {
    const Lock lock(mutex);
    error = std::move(newError);
  }

  Mutex mutex;
  ErrorPtr error HLV_GUARDED_BY(mutex);
};

std::shared_ptr<Synchronizer> Synchronizer::initWithAPIManager(
    std::shared_ptr<HLVSDKAPIManager> apiManager, std::shared_ptr<PLVInAppClient> paylevenClient) {
  return std::shared_ptr<Synchronizer>(
      new Synchronizer(std::move(apiManager), std::move(paylevenClient)));
}

Synchronizer::HLVSDKPaylevenPaymentInstrumentsSynchronizer(
    std::shared_ptr<HLVSDKAPIManager> apiManager, std::shared_ptr<PLVInAppClient> paylevenClient)
    : apiManager_(std::move(apiManager)),
      paylevenClient_(std::move(paylevenClient)),
      synchronizationQueue_(Platform::current()->makeSerialQueue(creationLabel)) {}

std::shared_ptr<HLVSDKAPIManager> Synchronizer::apiManager() const { return apiManager_; }

void Synchronizer::setApiManager(std::shared_ptr<HLVSDKAPIManager> apiManager) {
  apiManager_ = std::move(apiManager);
}

std::shared_ptr<PLVInAppClient> Synchronizer::paylevenClient() const { return paylevenClient_; }

void Synchronizer::setPaylevenClient(std::shared_ptr<PLVInAppClient> client) {
  paylevenClient_ = std::move(client);
}

std::shared_ptr<Queue> Synchronizer::synchronizationQueue() const { return synchronizationQueue_; }

void Synchronizer::setSynchronizationQueue(std::shared_ptr<Queue> queue) {
  synchronizationQueue_ = std::move(queue);
}

bool Synchronizer::isSynchronizing() const {
  return synchronizing_.load(std::memory_order_relaxed);
}

void Synchronizer::setSynchronizing(bool synchronizing) {
  synchronizing_.store(synchronizing, std::memory_order_relaxed);
}

void Synchronizer::synchronizePaymentInstrumentsForGuest(
    const std::shared_ptr<HLVSDKGuest>& guest) {
  synchronizePaymentInstrumentsForGuest(guest, [](bool, const ErrorPtr&) {});
}

void Synchronizer::synchronizePaymentInstrumentsForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                                                         HLVSDKSuccessCompletion completion) {
  if (isSynchronizing()) return;
  if (!guest) {
    HLVSDKAsserts::handleParameterAssert(
        "guest", "Can not synchronize payment instruments for guest if guest is nil");
    return;
  }
  if (!guest->paylevenToken()) {
    HLVSDKAsserts::handleParameterAssert(
        "guest.paylevenToken",
        "Can not synchronize payment instruments for guest without payleven token");
    return;
  }
  log(LogLevel::workAboutToStart, HLV_HERE(synchronizeMethod),
      "Will start synchrozation between external payment system and halvo");
  setSynchronizing(true);
  if (!synchronizationQueue()) {
    setSynchronizationQueue(Platform::current()->makeSerialQueue(fallbackLabel));
  }

  const auto run = std::make_shared<Run>();
  run->guest = guest;
  run->completion = std::move(completion);
  const auto group = std::make_shared<Group>();
  group->enter();
  group->enter();
  group->notify(synchronizationQueue(), [self = shared_from_this(), run] { self->finish(*run); });

  fetchAllPaylevenPaymentInstrumentsForGuest(
      guest, [run, group](NullableList<Pair> instruments, const ErrorPtr& error) {
        if (error) {
          run->fail(error);
        } else {
          run->providerInstruments = std::move(instruments).value_or(List<Pair>());
        }
        group->leave();
      });
  send(apiManager(), &HLVSDKAPIManager::fetchGuestCreditCards, guest,
       oneShot([run, group](NullableList<Card> cards, const ErrorPtr& error) {
         if (error) {
           run->fail(error);
         } else {
           run->guestCards = std::move(cards);
         }
         group->leave();
       }));
}

HLV_AFTER_ALL_WRITERS void Synchronizer::finish(const Run& run) {
  const auto function = functionName(synchronizeMethod, 1);
  if (run.error) {
    log(LogLevel::failure, HLV_HERE(function), "Failed to synchronize payment instruments. %@",
        {run.error->developerMessage()});
    deliver(run.completion, false, run.error);
    return;
  }
  if (run.providerInstruments.empty()) {
    log(LogLevel::outcome, HLV_HERE(function),
        "Nothing to synchronize. No external payment instruments");
    deliver(run.completion, true, nullptr);
    return;
  }
  removeOrphans(run);
  log(LogLevel::outcome, HLV_HERE(function),
      "Successfully synchronized external payment system with halvo");
  deliver(run.completion, true, nullptr);
  setSynchronizing(false);
}

void Synchronizer::removeOrphans(const Run& run) {
  for (const auto& pair : run.providerInstruments) {
    if (isCreditCardExistsInArray(run.guestCards, pair)) continue;
    const auto instrument = send(pair, &Pair::paymentInstrument);
    const auto useCase = send(pair, &Pair::useCase);
    log(LogLevel::workAboutToStart, HLV_HERE(functionName(synchronizeMethod, 1)),
        "Will remove payment instrument with identifier %@ from external payment system",
        {send(instrument, &Instrument::identifier)});
    send(paylevenClient(), &PLVInAppClient::removePaymentInstrument, instrument, useCase,
         run.guest->paylevenToken(), oneShot([](const ErrorPtr& error) {
           const auto function = functionName(synchronizeMethod, 2);
           if (error) {
             log(LogLevel::outcome, HLV_HERE(function),
                 "Failed to remove payment instrument from external payment system. %@",
                 {error->localizedDescription()});
           } else {
             log(LogLevel::outcome, HLV_HERE(function),
                 "Successfully remove payment instrument from external payment system");
           }
         }));
  }
}

bool Synchronizer::isCreditCardExistsInArray(
    const NullableList<HLVSDKCreditCard>& cards,
    const std::shared_ptr<HLVSDKPLVPaymentInstrument>& paymentInstrument) const {
  if (!cards || cards->empty()) return false;
  const auto instrument = send(paymentInstrument, &Pair::paymentInstrument);
  const auto useCase = send(paymentInstrument, &Pair::useCase);
  const auto identifier = send(instrument, &Instrument::identifier);
  const auto brand = send(instrument, &Instrument::cardBrand);
  const Secret number(instrument, &Instrument::pan);
  const auto standsForIt = [&](const std::shared_ptr<Card>& card) {
    const auto external = send(card, &Card::externalIdentifier);
    if (external) return isEqualToString(external, identifier);
    return hasSuffix(number.text(), send(card, &Card::lastFourDigits)) &&
           isEqualToString(brand, send(card, &Card::brand)) &&
           isEqualToString(useCase, send(card, &Card::useCase));
  };
  // Both sides list cards by age, so the match is probably just behind the last one. Where the
  // search begins does not change what it returns.
  const auto begin = cards->begin();
  const auto end = cards->end();
  const auto first = begin + static_cast<std::ptrdiff_t>(
                                 likelyCard_.load(std::memory_order_relaxed) % cards->size());
  auto found = std::find_if(first, end, standsForIt);
  if (found == end) {
    found = std::find_if(begin, first, standsForIt);
    if (found == first) return false;
  }
  likelyCard_.store(static_cast<std::size_t>(found - begin) + 1, std::memory_order_relaxed);
  return true;
}

void Synchronizer::fetchAllPaylevenPaymentInstrumentsForGuest(
    const std::shared_ptr<HLVSDKGuest>& guest, HLVSDKPLVPaymentInstrumentsCompletion completion) {
  const auto lists = std::make_shared<ProviderLists>();
  const auto group = std::make_shared<Group>();
  for (const auto& useCase : {kHLVSDKCreditCardUseCasePrivate(), kHLVSDKCreditCardUseCaseBusiness(),
                              kHLVSDKCreditCardUseCaseDefault()}) {
    group->enter();
    send(paylevenClient(), &PLVInAppClient::getPaymentInstrumentsList,
         send(guest, &HLVSDKGuest::paylevenToken), useCase,
         oneShot([lists, group, useCase](const NullableList<Instrument>& instruments,
                                         const ErrorPtr& error) {
           if (error) {
             lists->fail(paymentProviderError(error));
           } else {
             lists->take(instruments, useCase);
           }
           group->leave();
         }));
  }
  group->notify(Platform::current()->mainQueue(),
                [lists, completion = std::move(completion)] { lists->reportTo(completion); });
}

}  // namespace hlv
