// A further card of a guest who has a provider user token.
#include <utility>

#include "Async/Deliver.h"
#include "Async/OneShot.h"
#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Models/HLVSDKAddPaylevenCreditCardRequestInfo.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Public/Managers/KitErrors.h"
#include "Public/Managers/Log.h"
#include "Public/Managers/MakeProviderInstrument.h"
#include "Values/Send.h"

namespace hlv {

namespace {

constexpr const char* addNewMethod =
    "-[HLVSDKPaylevenPaymentInstrumentManager "
    "addNewPaymentInstrument:billingAddress:forGuest:completion:]";

void logFailure(const CallSite& site, const ErrorPtr& error) {
  log(LogLevel::failure, site, "Failed to add new payment instrument. %@", {error});
}

}  // namespace

void HLVSDKPaylevenPaymentInstrumentManager::addNewPaymentInstrument(
    const std::shared_ptr<HLVSDKPaymentInstrument>& card,
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
    const std::shared_ptr<HLVSDKGuest>& guest, HLVSDKGuestCardCompletion completion) {
  addNewPaymentInstrumentToPayleven(
      card, send(guest, &HLVSDKGuest::paylevenToken),
      [completion = std::move(completion), card, guest, address, weakManager = weak_from_this()](
          const NullableString& token,
          const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
          const ErrorPtr& providerError) mutable {
        const auto manager = weakManager.lock();
        if (providerError) {
          logFailure(HLV_HERE(functionName(addNewMethod, 1)), providerError);
          deliver(std::move(completion), nullptr, nullptr, providerError);
          return;
        }
        const auto identifier = send(instrument, &PLVCreditCardPaymentInstrument::identifier);
        if (!identifier) {
          log(LogLevel::failure, HLV_HERE(functionName(addNewMethod, 1)),
              "Failed to add new payment instrument. Added instrument to external payment system "
              "doesn't have identifier");
          deliverBuilt(std::move(completion), [](Delivery delivery) {
            return std::tuple(
                nullptr, nullptr,
                missingIdentifierError(HLV_HERE(functionName(addNewMethod, delivery, 1))));
          });
          return;
        }
        send(card, &HLVSDKPaymentInstrument::setExternalIdentifier, identifier);
        const auto request =
            HLVSDKAddPaylevenCreditCardRequestInfo::initWithPaymentInstrument(card, address, token);
        send(send(manager, &HLVSDKPaylevenPaymentInstrumentManager::apiManager),
             &HLVSDKAPIManager::addCreditCardForGuest, guest, request,
             oneShot([completion = std::move(completion), providerError](
                         const std::shared_ptr<HLVSDKGuest>& backendGuest,
                         const std::shared_ptr<HLVSDKCreditCard>& backendCard,
                         const ErrorPtr& backendError) mutable {
               // Kept for compatibility: it is the provider's error that counts here, and there was
               // none: a registration that the backend refuses is reported without an error.
               if (providerError) {
                 logFailure(HLV_HERE(functionName(addNewMethod, 2)), backendError);
                 deliver(std::move(completion), nullptr, nullptr, backendError);
                 return;
               }
               deliver(std::move(completion), backendGuest, backendCard, nullptr);
             }));
      });
}

void HLVSDKPaylevenPaymentInstrumentManager::addNewPaymentInstrumentToPayleven(
    const std::shared_ptr<HLVSDKPaymentInstrument>& card, const NullableString& token,
    HLVSDKPaylevenInstrumentCompletion completion) {
  const auto instrument = makeProviderInstrument(card);
  const auto useCase = send(card, &HLVSDKPaymentInstrument::instrumentUseCaseString);

  send(paymentClient(), &PLVInAppClient::addPaymentInstrument, instrument, token, useCase,
       oneShot([completion = std::move(completion), card, token,
                weakManager = weak_from_this()](const ErrorPtr& error) mutable {
         if (error) {
           deliverProviderError(std::move(completion), std::nullopt, error);
           return;
         }
         send(weakManager.lock(),
              &HLVSDKPaylevenPaymentInstrumentManager::processAddedPaymentInstrument, card, token,
              std::move(completion));
       }));
}

}  // namespace hlv
