// Deleting a card: at the backend first, then its instrument at the provider.
#include <algorithm>
#include <utility>

#include "Async/Deliver.h"
#include "Async/OneShot.h"
#include "Host/HLVSDKCoreKit/HLVSDKAsserts.h"
#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Matching/HLVSDKPaylevenPaymentInstrumentFinder.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Public/Managers/KitErrors.h"
#include "Values/Send.h"

namespace hlv {

using Card = HLVSDKCreditCard;

namespace {

constexpr const char* deleteMethod =
    "-[HLVSDKPaylevenPaymentInstrumentManager "
    "deletePaymentInstrumentWithID:useCase:fromGuest:completion:]";

/// Reports a missing argument to the assertion handler and then to the completion, which may
/// get another name: kept for compatibility.
void refuse(const char* assertedName, const char* reportedName, HLVSDKGuestCompletion completion) {
  HLVSDKAsserts::handleParameterAssert(assertedName, std::nullopt);
  deliverBuilt(std::move(completion), [reportedName](Delivery delivery) {
    return std::tuple(nullptr,
                      requiredArgumentError(reportedName, std::nullopt,
                                            HLV_HERE(functionName(deleteMethod, delivery))));
  });
}

std::shared_ptr<Card> firstCardWithID(const std::shared_ptr<HLVSDKGuest>& guest,
                                      const NullableString& ID) {
  const auto cards = send(guest, &HLVSDKGuest::creditCards).value_or(List<Card>());
  const auto found = std::find_if(cards.begin(), cards.end(), [&](const auto& card) {
    return isEqualToString(send(card, &Card::halvoID), ID);
  });
  return found == cards.end() ? nullptr : *found;
}

/// The provider's half, once the backend has deleted the card.
struct ProviderRemoval {
  std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager;
  std::shared_ptr<Card> card;
  NullableString useCase;
  std::shared_ptr<HLVSDKGuest> updatedGuest;
  HLVSDKGuestCompletion completion;

  void removeFrom(const NullableList<PLVCreditCardPaymentInstrument>& instruments) {
    const auto instrument = HLVSDKPaylevenPaymentInstrumentFinder::findPaylevenPaymentInstrumentIn(
        instruments, send(card, &Card::lastFourDigits), send(card, &Card::brand));
    if (!instrument) {
      deliver(std::move(completion), updatedGuest, nullptr);
      return;
    }
    send(manager->paymentClient(), &PLVInAppClient::removePaymentInstrument, instrument, useCase,
         send(updatedGuest, &HLVSDKGuest::paylevenToken),
         oneShot([completion = std::move(completion),
                  updatedGuest = updatedGuest](const ErrorPtr& error) mutable {
           deliver(std::move(completion), updatedGuest,
                   error ? paymentProviderError(error) : nullptr);
         }));
  }
};

}  // namespace

void HLVSDKPaylevenPaymentInstrumentManager::deletePaymentInstrumentWithID(
    const NullableString& ID, const NullableString& useCase,
    const std::shared_ptr<HLVSDKGuest>& guest, HLVSDKGuestCompletion completion) {
  refreshConnection();

  if (!send(guest, &HLVSDKGuest::paylevenToken)) {
    return refuse("guest.paylevenToken", "paymentToken", std::move(completion));
  }
  if (!ID) return refuse("halvoID", "halvoID", std::move(completion));
  if (!useCase) return refuse("useCase", "useCase", std::move(completion));

  const auto card = firstCardWithID(guest, ID);
  if (!card) {
    const auto unknownCard = requiredArgumentError(
        "existedCard", "Given guest must have credit card with the given halvoID",
        HLV_HERE(deleteMethod));
    deliver(std::move(completion), nullptr, unknownCard);
    return;
  }
  if (!isConnectionAvailable()) {
    deliverBuilt(std::move(completion),
                 [](Delivery) { return std::tuple(nullptr, noConnectionError()); });
    return;
  }

  send(apiManager(), &HLVSDKAPIManager::deleteCreditCardWithID, ID, guest,
       oneShot([completion = std::move(completion), useCase, card, weakManager = weak_from_this()](
                   const std::shared_ptr<HLVSDKGuest>& updatedGuest,
                   const ErrorPtr& backendError) mutable {
         if (backendError) {
           deliver(std::move(completion), nullptr, backendError);
           return;
         }
         const auto manager = weakManager.lock();
         if (!manager) return;

         ProviderRemoval removal{manager, card, useCase, updatedGuest, std::move(completion)};
         send(manager->paymentClient(), &PLVInAppClient::getPaymentInstrumentsList,
              send(updatedGuest, &HLVSDKGuest::paylevenToken), useCase,
              oneShot([removal = std::move(removal), backendError](
                          const NullableList<PLVCreditCardPaymentInstrument>& instruments,
                          const ErrorPtr& listError) mutable {
                // Kept for compatibility: it is the backend's error that counts here, and there was
                // none: a list that failed goes on as it came, and finds nothing to remove.
                if (backendError) {
                  deliver(std::move(removal.completion), nullptr, paymentProviderError(listError));
                  return;
                }
                removal.removeFrom(instruments);
              }));
       }));
}

}  // namespace hlv
