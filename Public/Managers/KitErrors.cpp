#include "Public/Managers/KitErrors.h"

#include "Host/Halvo_Errors/HLVErrorDomains.h"
#include "Host/Halvo_Errors/HLVErrorFacade.h"
#include "Values/Send.h"

namespace hlv {

ErrorPtr requiredArgumentError(const char* name, const NullableString& message,
                               const CallSite& builder) {
  return send(HLVErrorFacade::make(), &HLVErrorFacade::requiredArgumentErrorWithName, name, message,
              builder.function.c_str(), builder.path);
}

ErrorPtr missingIdentifierError(const CallSite& builder) {
  return requiredArgumentError(
      "identifier", "Added instrument to external payment system doesn't have identifier", builder);
}

ErrorPtr paymentProviderError(const ErrorPtr& error) {
  return send(HLVErrorFacade::make(), &HLVErrorFacade::paymentProviderErrorWithError, error);
}

ErrorPtr noConnectionError() {
  return send(HLVErrorFacade::make(), &HLVErrorFacade::errorWithCode, 1, HLVURLErrorDomain(),
              std::nullopt);
}

}  // namespace hlv
