#include "ObjC/Binding/Errors.h"

#import <HLVSDKPaylevenKit/HalvoErrorsDeclarations.h>

#include "ObjC/Binding/Held.h"
#include "ObjC/Binding/Strings.h"

namespace hlv::objc {
namespace {

class FoundationError final : public Adapter<Error, NSError*> {
 public:
  using Adapter::Adapter;
  Text domain() const override { return fromNSString([object() domain]).value_or(""); }
  std::int64_t code() const override { return [object() code]; }
  NullableString localizedDescription() const override {
    return fromNSString([object() localizedDescription]);
  }
  NullableString developerMessage() const override {
    // Errors of other makers than the host may not know the message.
    if (![object() respondsToSelector:@selector(developerMessage)]) return std::nullopt;
    return fromNSString([object() developerMessage]);
  }
};

}  // namespace

ErrorPtr fromNSError(NSError* error) { return adapted<FoundationError>(error); }

NSError* toNSError(const ErrorPtr& error) {
  if (!error) return nil;
  if (NSError* same = original(error)) return same;
  NSMutableDictionary* texts = [NSMutableDictionary dictionary];
  if (NSString* description = toNSString(error->localizedDescription())) {
    [texts setObject:description forKey:NSLocalizedDescriptionKey];
  }
  if (NSString* message = toNSString(error->developerMessage())) {
    [texts setObject:message forKey:@"HLVDeveloperMessage"];
  }
  return [NSError errorWithDomain:toNSString(error->domain())
                             code:static_cast<NSInteger>(error->code())
                         userInfo:texts];
}

}  // namespace hlv::objc
