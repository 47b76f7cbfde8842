// Confirming an added card: the provider's reply to an add names no instrument, so it is looked
// for among those that are stored now.
#include <utility>

#include "Async/Deliver.h"
#include "Async/OneShot.h"
#include "Host/HLVSDKCoreKit/HLVSDKAsserts.h"
#include "Host/Halvo_Errors/HLVErrorDomains.h"
#include "Host/Halvo_Errors/HLVErrorFacade.h"
#include "Matching/HLVSDKPaylevenPaymentInstrumentFinder.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Public/Managers/KitErrors.h"
#include "Values/Send.h"

namespace hlv {
namespace {

constexpr const char* processMethod =
    "-[HLVSDKPaylevenPaymentInstrumentManager "
    "processAddedPaymentInstrument:paylevenToken:completion:]";

/// Reports a missing argument to the assertion handler and then, with the token that there is, to
/// the completion.
void refuse(const char* argument, const NullableString& token,
            HLVSDKPaylevenInstrumentCompletion completion) {
  HLVSDKAsserts::handleParameterAssert(argument, std::nullopt);
  deliverBuilt(std::move(completion), [argument, token](Delivery delivery) {
    return std::tuple(token, nullptr,
                      requiredArgumentError(argument, std::nullopt,
                                            HLV_HERE(functionName(processMethod, delivery))));
  });
}

}  // namespace

void HLVSDKPaylevenPaymentInstrumentManager::deliverProviderError(
    HLVSDKPaylevenInstrumentCompletion completion, const NullableString& token,
    const ErrorPtr& error) {
  deliverBuilt(std::move(completion), [token, error](Delivery) {
    return std::tuple(token, nullptr, paymentProviderError(error));
  });
}

void HLVSDKPaylevenPaymentInstrumentManager::processAddedPaymentInstrument(
    const std::shared_ptr<HLVSDKPaymentInstrument>& card, const NullableString& paylevenToken,
    HLVSDKPaylevenInstrumentCompletion completion) {
  if (!card) return refuse("paymentInstrument", paylevenToken, std::move(completion));
  if (!paylevenToken) return refuse("paylevenToken", std::nullopt, std::move(completion));

  send(paymentClient(), &PLVInAppClient::getPaymentInstrumentsList, paylevenToken,
       card->instrumentUseCaseString(),
       oneShot([completion = std::move(completion), token = paylevenToken, card](
                   const NullableList<PLVCreditCardPaymentInstrument>& instruments,
                   const ErrorPtr& error) mutable {
         if (error) {
           deliverProviderError(std::move(completion), token, error);
           return;
         }
         const auto instrument =
             HLVSDKPaylevenPaymentInstrumentFinder::findPaylevenPaymentInstrumentIn(instruments,
                                                                                    card);
         // Today's finder passes over such instruments; should it ever return one, it is refused.
         if (send(instrument, &PLVCreditCardPaymentInstrument::state) != 0) {
           const auto invalid = send(
               HLVErrorFacade::make(), &HLVErrorFacade::errorWithCode, 5, HLVPaymentErrorDomain(),
               "Failed to add payment instrument. Payment instrument information is invalid");
           deliver(std::move(completion), std::nullopt, nullptr, invalid);
           return;
         }
         deliver(std::move(completion), token, instrument, nullptr);
       }));
}

}  // namespace hlv
