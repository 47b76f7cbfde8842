#include "ObjC/Host/Services.h"

#include "ObjC/Binding/Errors.h"
#include "ObjC/Binding/Strings.h"
#include "ObjC/Host/HostMessages.h"

namespace hlv::objc {

ErrorPtr ErrorFacade::errorWithCode(std::int64_t code, const NullableString& domain,
                                    const NullableString& message) {
  return fromNSError([toHost(object()) errorWithCode:static_cast<NSInteger>(code)
                                              domain:toNSString(domain)
                                             message:toNSString(message)]);
}

ErrorPtr ErrorFacade::invalidArgumentErrorWithName(const NullableString& name,
                                                   const NullableString& value,
                                                   const NullableString& message) {
  return fromNSError([object() invalidArgumentErrorWithName:toNSString(name)
                                                      value:toNSString(value)
                                                    message:toNSString(message)]);
}

ErrorPtr ErrorFacade::requiredArgumentErrorWithName(const NullableString& name,
                                                    const NullableString& message,
                                                    const char* functionName,
                                                    const char* fileName) {
  return fromNSError([object() requiredArgumentErrorWithName:toNSString(name)
                                                     message:toNSString(message)
                                                functionName:functionName
                                                    fileName:fileName]);
}

ErrorPtr ErrorFacade::paymentProviderErrorWithError(const ErrorPtr& error) {
  return fromNSError([object() paymentProviderErrorWithError:toNSError(error)]);
}

}  // namespace hlv::objc
