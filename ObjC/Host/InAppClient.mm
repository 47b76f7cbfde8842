#include "ObjC/Host/InAppClient.h"

#include <utility>

#include "ObjC/Binding/Crossing.h"
#include "ObjC/Host/Completions.h"
#include "ObjC/Host/Records.h"

namespace hlv::objc {

void InAppClient::registerWithAPIKey(const NullableString& key) {
  [object() registerWithAPIKey:toNSString(key)];
}

void InAppClient::createUserToken(const NullableString& email,
                                  const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                                  const NullableString& useCase,
                                  PLVUserTokenCompletion completion) {
  [object() createUserToken:toNSString(email)
      withPaymentInstrument:original(instrument)
                 andUseCase:toNSString(useCase)
              andCompletion:asBlock(std::move(completion)).block()];
}

void InAppClient::addPaymentInstrument(
    const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
    const NullableString& userToken, const NullableString& useCase, PLVErrorCompletion completion) {
  [object() addPaymentInstrument:original(instrument)
                    forUserToken:toNSString(userToken)
                      andUseCase:toNSString(useCase)
                   andCompletion:asBlock(std::move(completion)).block()];
}

void InAppClient::getPaymentInstrumentsList(const NullableString& userToken,
                                            const NullableString& useCase,
                                            PLVPaymentInstrumentsCompletion completion) {
  [object() getPaymentInstrumentsList:toNSString(userToken)
                           andUseCase:toNSString(useCase)
                        andCompletion:asBlock(std::move(completion)).block()];
}

void InAppClient::removePaymentInstrument(
    const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
    const NullableString& useCase, const NullableString& userToken, PLVErrorCompletion completion) {
  [object() removePaymentInstrument:original(instrument)
                        fromUseCase:toNSString(useCase)
                       forUserToken:toNSString(userToken)
                      andCompletion:asBlock(std::move(completion)).block()];
}

}  // namespace hlv::objc
