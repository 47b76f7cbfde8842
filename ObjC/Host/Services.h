// The host's small services, as the core asks them.
//
// Threading: as the services.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/HalvoAuthenticationDeclarations.h>
#import <HLVSDKPaylevenKit/HalvoErrorsDeclarations.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Host/Halvo_Authentication/HLVSession.h"
#include "Host/Halvo_Errors/HLVErrorFacade.h"
#include "ObjC/Binding/Crossing.h"

/// Messages to the host whose types are the host's own business. Hosts declare these with
/// enumerations and with classes of their own. Sent through this protocol they compile against
/// every one of them; whole numbers arrive all the same.
@protocol HLVHostMessages
- (Class)kit;
- (id)configuration;
- (void)setProvider:(NSInteger)provider;
- (NSError*)errorWithCode:(NSInteger)code domain:(NSString*)domain message:(NSString*)message;
- (void)logWithLevel:(NSInteger)level
                path:(const char*)path
                line:(NSInteger)line
            function:(const char*)function
              format:(NSString*)format, ...;
@end

namespace hlv::objc {

inline id<HLVHostMessages> toHost(id object) { return static_cast<id<HLVHostMessages>>(object); }

class Reachability final : public Adapter<HLVSDKReachability, ::HLVSDKReachability*> {
 public:
  using Adapter::Adapter;
  std::int64_t currentState() const override { return [object() currentState]; }
};

class Session final : public Adapter<HLVSession, ::HLVSession*> {
 public:
  using Adapter::Adapter;
  bool isAuthorized() const override { return [object() isAuthorized]; }
};

class ErrorFacade final : public Adapter<HLVErrorFacade, ::HLVErrorFacade*> {
 public:
  using Adapter::Adapter;
  ErrorPtr errorWithCode(std::int64_t code, const NullableString& domain,
                         const NullableString& message) override {
    return fromNSError([toHost(object()) errorWithCode:static_cast<NSInteger>(code)
                                                domain:toNSString(domain)
                                               message:toNSString(message)]);
  }
  ErrorPtr invalidArgumentErrorWithName(const NullableString& name, const NullableString& value,
                                        const NullableString& message) override {
    return fromNSError([object() invalidArgumentErrorWithName:toNSString(name)
                                                        value:toNSString(value)
                                                      message:toNSString(message)]);
  }
  ErrorPtr requiredArgumentErrorWithName(const NullableString& name, const NullableString& message,
                                         const char* functionName, const char* fileName) override {
    return fromNSError([object() requiredArgumentErrorWithName:toNSString(name)
                                                       message:toNSString(message)
                                                  functionName:functionName
                                                      fileName:fileName]);
  }
  ErrorPtr paymentProviderErrorWithError(const ErrorPtr& error) override {
    return fromNSError([object() paymentProviderErrorWithError:toNSError(error)]);
  }
};

/// One adapter for both loggers: they take the same message.
class Logger final : public Adapter<HLVSDKLogger, id> {
 public:
  using Adapter::Adapter;
  void logWithLevel(int level, const char* path, int line, const char* function, const char* format,
                    const std::vector<HLVSDKLogArgument>& arguments) override {
    // The message takes its arguments one by one; what a format does not name is not read.
    std::array<id, 3> objects{};
    for (std::size_t i = 0; i < arguments.size() && i < objects.size(); ++i) {
      objects[i] =
          std::visit([](const auto& argument) -> id { return crossing(argument); }, arguments[i]);
    }
    [toHost(object()) logWithLevel:level
                              path:path
                              line:line
                          function:function
                            format:toNSString(format), objects[0], objects[1], objects[2]];
  }
};

}  // namespace hlv::objc
