// The host's maker of errors, as an Objective-C app calls it.
#import <HLVSDKPaylevenKit/HalvoErrorsDeclarations.h>

#include "Host/Halvo_Errors/HLVErrorFacade.h"
#include "ObjC/Binding/Errors.h"
#include "ObjC/Binding/Strings.h"
#include "ObjC/HostClasses/PlayedHost.h"
#include "Values/Send.h"

using hlv::objc::fromNSError;
using hlv::objc::fromNSString;
using hlv::objc::toNSError;

namespace {

std::shared_ptr<hlv::HLVErrorFacade> facade() {
  return hlv::send(hlv::host_classes::playedHost(), &hlv::Host::makeErrorFacade);
}

/// The core only looks at whether a value is there and whether it is empty.
hlv::NullableString stateOf(id value) {
  if (!value) return std::nullopt;
  const bool isEmpty = [value isKindOfClass:[NSString class]] && [value length] == 0;
  return isEmpty ? "" : "(a value)";
}

}  // namespace

@implementation HLVErrorFacade

- (NSError*)errorWithCode:(NSInteger)code domain:(NSString*)domain message:(NSString*)message {
  return toNSError(hlv::send(facade(), &hlv::HLVErrorFacade::errorWithCode, code,
                             fromNSString(domain), fromNSString(message)));
}

- (NSError*)invalidArgumentErrorWithName:(NSString*)name
                                   value:(id)value
                                 message:(NSString*)message {
  return toNSError(hlv::send(facade(), &hlv::HLVErrorFacade::invalidArgumentErrorWithName,
                             fromNSString(name), stateOf(value), fromNSString(message)));
}

- (NSError*)requiredArgumentErrorWithName:(NSString*)name
                                  message:(NSString*)message
                             functionName:(const char*)functionName
                                 fileName:(const char*)fileName {
  return toNSError(hlv::send(facade(), &hlv::HLVErrorFacade::requiredArgumentErrorWithName,
                             fromNSString(name), fromNSString(message), functionName, fileName));
}

- (NSError*)paymentProviderErrorWithError:(NSError*)error {
  return toNSError(
      hlv::send(facade(), &hlv::HLVErrorFacade::paymentProviderErrorWithError, fromNSError(error)));
}

@end

@implementation NSError (HLVDeveloperMessage)

- (NSString*)developerMessage {
  return [[self userInfo] objectForKey:@"HLVDeveloperMessage"];
}

@end
