// The host's small services, as an Objective-C app uses them: assertions, the network, errors and
// the two loggers.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/HalvoErrorsDeclarations.h>

#include <cstdarg>

#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Host/Halvo_Errors/HLVErrorFacade.h"
#include "ObjC/Binding/Strings.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/HostClasses/PlayedHost.h"
#include "Values/Send.h"

using hlv::send;
using hlv::host_classes::playedHost;
using hlv::objc::fromNSError;
using hlv::objc::fromNSString;
using hlv::objc::toNSError;

namespace {

std::shared_ptr<hlv::HLVSDKReachability> network() {
  return send(playedHost(), &hlv::Host::reachability);
}

std::shared_ptr<hlv::HLVErrorFacade> facade() {
  return send(playedHost(), &hlv::Host::makeErrorFacade);
}

/// The core only looks at whether a value is there and whether it is empty.
hlv::NullableString stateOf(id value) {
  if (!value) return std::nullopt;
  const bool isEmpty = [value isKindOfClass:[NSString class]] && [value length] == 0;
  return isEmpty ? "" : "(a value)";
}

/// Renders the line as Foundation does, and leaves the masking of card numbers to the logger. A
/// null logger logs nothing.
void writeLine(const std::shared_ptr<hlv::HLVSDKLogger>& logger, NSInteger level, const char* path,
               NSInteger line, const char* function, NSString* format, va_list arguments) {
  if (!logger || !format) return;
  NSString* text = [[NSString alloc] initWithFormat:format arguments:arguments];
  // As an argument, so that a "%@" which the line itself holds stays what it is.
  logger->logWithLevel(static_cast<int>(level), path, static_cast<int>(line), function, "%@",
                       {fromNSString(text)});
  [text release];
}

}  // namespace

@implementation HLVSDKAsserts

+ (void)handleAssertWithMessage:(NSString*)message {
  if (const auto host = playedHost()) host->handleAssertWithMessage(fromNSString(message));
}

+ (void)handleParameterAssert:(NSString*)parameter withMessage:(NSString*)message {
  if (const auto host = playedHost()) {
    host->handleParameterAssert(fromNSString(parameter), fromNSString(message));
  }
}

@end

@implementation HLVSDKReachability

+ (HLVSDKReachability*)sharedReachability {
  static HLVSDKReachability* const reachability = [HLVSDKReachability new];
  return network() ? reachability : nil;
}

- (NSInteger)currentState {
  return static_cast<NSInteger>(send(network(), &hlv::HLVSDKReachability::currentState));
}

@end

@implementation HLVErrorFacade

- (NSError*)errorWithCode:(NSInteger)code domain:(NSString*)domain message:(NSString*)message {
  return toNSError(send(facade(), &hlv::HLVErrorFacade::errorWithCode, code, fromNSString(domain),
                        fromNSString(message)));
}

- (NSError*)invalidArgumentErrorWithName:(NSString*)name
                                   value:(id)value
                                 message:(NSString*)message {
  return toNSError(send(facade(), &hlv::HLVErrorFacade::invalidArgumentErrorWithName,
                        fromNSString(name), stateOf(value), fromNSString(message)));
}

- (NSError*)requiredArgumentErrorWithName:(NSString*)name
                                  message:(NSString*)message
                             functionName:(const char*)functionName
                                 fileName:(const char*)fileName {
  return toNSError(send(facade(), &hlv::HLVErrorFacade::requiredArgumentErrorWithName,
                        fromNSString(name), fromNSString(message), functionName, fileName));
}

- (NSError*)paymentProviderErrorWithError:(NSError*)error {
  return toNSError(
      send(facade(), &hlv::HLVErrorFacade::paymentProviderErrorWithError, fromNSError(error)));
}

@end

@implementation NSError (HLVDeveloperMessage)

- (NSString*)developerMessage {
  return [[self userInfo] objectForKey:@"HLVDeveloperMessage"];
}

@end

/// A class of the host whose lines go to the logger that `getter` of the core's host returns.
#define HLV_LOGGER(Logger, getter)                                                                \
  @implementation Logger                                                                          \
  static std::shared_ptr<hlv::HLVSDKLogger> getter() {                                            \
    return send(playedHost(), &hlv::Host::getter);                                                \
  }                                                                                               \
  +(Logger*)sharedLogger {                                                                        \
    static Logger* const logger = [Logger new];                                                   \
    return getter() ? logger : nil;                                                               \
  }                                                                                               \
  -(void)logWithLevel : (NSInteger)level path : (const char*)path line : (NSInteger)line function \
      : (const char*)function format : (NSString*)format,                                         \
      ... {                                                                                       \
    va_list arguments;                                                                            \
    va_start(arguments, format);                                                                  \
    writeLine(getter(), level, path, line, function, format, arguments);                          \
    va_end(arguments);                                                                            \
  }                                                                                               \
  @end

HLV_LOGGER(HLVSDKRemoteLogger, remoteLogger)
HLV_LOGGER(HLVSDKConsoleLogger, consoleLogger)
