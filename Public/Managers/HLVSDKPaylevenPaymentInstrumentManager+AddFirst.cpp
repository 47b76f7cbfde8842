// The first card of a guest: the provider creates the user token with it.
#include <utility>

#include "Async/Deliver.h"
#include "Async/Group.h"
#include "Async/OneShot.h"
#include "Host/HLVSDKCoreKit/HLVSDKAsserts.h"
#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Host/HLVSDKCoreKit/HLVSDKUpdateGuestRequestInfo.h"
#include "Models/HLVSDKAddPaylevenCreditCardRequestInfo.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Public/Managers/KitErrors.h"
#include "Public/Managers/MakeProviderInstrument.h"
#include "Values/Mutex.h"
#include "Values/Send.h"

namespace hlv {

namespace {

constexpr const char* addFirstMethod =
    "-[HLVSDKPaylevenPaymentInstrumentManager "
    "addFirstPaymentInstrument:billingAddress:forGuest:completion:]";
constexpr const char* addFirstToPaylevenMethod =
    "-[HLVSDKPaylevenPaymentInstrumentManager "
    "addFirstPaymentInstrumentToPayleven:forGuestEmail:completion:]";

/// Where the two replies of the backend meet. They may come on two threads at the same time.
class BackendAnswers {
 public:
  void guestUpdated(const ErrorPtr& error) {
    const Lock lock(mutex_);
    keepFirst(error);
  }

  void cardAdded(const std::shared_ptr<HLVSDKCreditCard>& card, const ErrorPtr& error) {
    const Lock lock(mutex_);
    keepFirst(error);
    // A card that came before the first error stays: card and error are then reported together.
    card_ = firstError_ ? nullptr : card;
  }

  void deliverTo(HLVSDKGuestCardCompletion completion,
                 const std::shared_ptr<HLVSDKGuest>& guest) const HLV_AFTER_ALL_WRITERS {
    deliver(std::move(completion), guest, card_, firstError_);
  }

 private:
  void keepFirst(const ErrorPtr& error) HLV_REQUIRES(mutex_) {
    if (!firstError_) firstError_ = error;
  }

  Mutex mutex_;
  ErrorPtr firstError_ HLV_GUARDED_BY(mutex_);
  std::shared_ptr<HLVSDKCreditCard> card_ HLV_GUARDED_BY(mutex_);
};

/// What waits while the provider works.
struct FirstCard {
  std::weak_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager;
  std::shared_ptr<HLVSDKGuest> guest;
  std::shared_ptr<HLVSDKPaymentInstrument> card;
  std::shared_ptr<HLVSDKPaymentBillingAddress> address;
  HLVSDKGuestCardCompletion completion;

  /// Stores the token on the guest and registers the card, neither waiting for the other. Uses the
  /// enrolment up. Without the manager no request goes out, the group never empties, and the
  /// completion is never called.
  void registerAtBackend(const NullableString& token) {
    const auto strongManager = manager.lock();
    const auto apiManager =
        send(strongManager, &HLVSDKPaylevenPaymentInstrumentManager::apiManager);
    const auto answers = std::make_shared<BackendAnswers>();
    const auto group = std::make_shared<Group>();

    group->enter();
    const auto update = HLVSDKUpdateGuestRequestInfo::make();
    send(update, &HLVSDKUpdateGuestRequestInfo::setPaymentToken, token);
    send(apiManager, &HLVSDKAPIManager::updateCurrentGuestWithRequest, update,
         oneShot([answers, group](const std::shared_ptr<HLVSDKGuest>&, const ErrorPtr& error) {
           answers->guestUpdated(error);
           group->leave();
         }));

    group->enter();
    const auto request =
        HLVSDKAddPaylevenCreditCardRequestInfo::initWithPaymentInstrument(card, address, token);
    send(apiManager, &HLVSDKAPIManager::addCreditCardForGuest, guest, request,
         oneShot([answers, group](const std::shared_ptr<HLVSDKGuest>&,
                                  const std::shared_ptr<HLVSDKCreditCard>& added,
                                  const ErrorPtr& error) {
           answers->cardAdded(added, error);
           group->leave();
         }));

    // Card and address stay with the enrolment until its completion has been called.
    group->notify(Platform::current()->mainQueue(),
                  [answers, enrolment = std::move(*this)]() mutable {
                    answers->deliverTo(std::move(enrolment.completion), enrolment.guest);
                  });
  }
};

}  // namespace

void HLVSDKPaylevenPaymentInstrumentManager::addFirstPaymentInstrument(
    const std::shared_ptr<HLVSDKPaymentInstrument>& card,
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
    const std::shared_ptr<HLVSDKGuest>& guest, HLVSDKGuestCardCompletion completion) {
  addFirstPaymentInstrumentToPayleven(
      card, send(guest, &HLVSDKGuest::email),
      [firstCard = FirstCard{weak_from_this(), guest, card, address, std::move(completion)}](
          const NullableString& token,
          const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
          const ErrorPtr& error) mutable {
        if (error) {
          deliver(std::move(firstCard.completion), nullptr, nullptr, error);
          return;
        }
        const auto identifier = send(instrument, &PLVCreditCardPaymentInstrument::identifier);
        if (identifier) {
          send(firstCard.card, &HLVSDKPaymentInstrument::setExternalIdentifier, identifier);
          firstCard.registerAtBackend(token);
          return;
        }
        deliverBuilt(std::move(firstCard.completion), [](Delivery delivery) {
          return std::tuple(
              nullptr, nullptr,
              missingIdentifierError(HLV_HERE(functionName(addFirstMethod, delivery))));
        });
      });
}

void HLVSDKPaylevenPaymentInstrumentManager::addFirstPaymentInstrumentToPayleven(
    const std::shared_ptr<HLVSDKPaymentInstrument>& card, const NullableString& email,
    HLVSDKPaylevenInstrumentCompletion completion) {
  const auto instrument = makeProviderInstrument(card);
  const auto useCase = send(card, &HLVSDKPaymentInstrument::instrumentUseCaseString);

  send(paymentClient(), &PLVInAppClient::createUserToken, email, instrument, useCase,
       oneShot([completion = std::move(completion), card, weakManager = weak_from_this()](
                   const NullableString& token, const ErrorPtr& error) mutable {
         if (error) {
           deliverProviderError(std::move(completion), std::nullopt, error);
         } else if (token) {
           send(weakManager.lock(),
                &HLVSDKPaylevenPaymentInstrumentManager::processAddedPaymentInstrument, card, token,
                std::move(completion));
         } else {
           HLVSDKAsserts::handleParameterAssert("userToken", std::nullopt);
           deliverBuilt(std::move(completion), [](Delivery delivery) {
             return std::tuple(
                 std::nullopt, nullptr,
                 requiredArgumentError("userToken", std::nullopt,
                                       HLV_HERE(functionName(addFirstToPaylevenMethod, delivery))));
           });
         }
       }));
}

}  // namespace hlv
