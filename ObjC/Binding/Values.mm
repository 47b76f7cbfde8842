#include "ObjC/Binding/Values.h"

#import <HLVSDKPaylevenKit/HalvoErrorsDeclarations.h>

#include <utility>

#include "ObjC/Binding/Held.h"
#include "ObjC/Binding/Strings.h"

namespace hlv::objc {
namespace {

id toObject(const Value& value);

Value fromObject(id object) {
  static const Class booleans = [@(YES) class];
  if ([object isKindOfClass:booleans]) return Value(static_cast<bool>([object boolValue]));
  if ([object isKindOfClass:[NSNull class]]) return Value();
  if ([object isKindOfClass:[NSString class]]) return Value(fromNSString(object));
  if ([object isKindOfClass:[NSDictionary class]]) return Value(fromNSDictionary(object));
  if ([object isKindOfClass:[NSArray class]]) {
    Array values;
    for (id element in object) values.push_back(fromObject(element));
    return Value(std::move(values));
  }
  if (![object isKindOfClass:[NSNumber class]]) return Value(adapted<Adapter<Object, id>>(object));
  const auto whole = std::int64_t{[object longLongValue]};
  // Only it can be a fraction that a double is not.
  if ([object isKindOfClass:[NSDecimalNumber class]] && ![object isEqual:@(whole)]) {
    return Value(adapted<Adapter<Object, id>>(object));
  }
  const char kind = *[object objCType];
  if (kind == 'f' || kind == 'd') return Value([object doubleValue]);
  if (kind == 'Q') return Value(std::uint64_t{[object unsignedLongLongValue]});
  return Value(whole);
}

struct ToObject {
  id operator()(std::monostate) const { return [NSNull null]; }
  id operator()(bool value) const { return @(static_cast<BOOL>(value)); }
  id operator()(std::int64_t value) const { return @(static_cast<long long>(value)); }
  id operator()(std::uint64_t value) const { return @(static_cast<unsigned long long>(value)); }
  id operator()(double value) const { return @(value); }
  id operator()(const std::string& value) const { return toNSString(value); }
  id operator()(const Array& values) const {
    NSMutableArray* array = [NSMutableArray arrayWithCapacity:values.size()];
    for (const auto& value : values) [array addObject:toObject(value)];
    return [[array copy] autorelease];
  }
  id operator()(const Dictionary& values) const { return toNSDictionary(values); }
  id operator()(const std::shared_ptr<const Object>& value) const { return original(value); }
};

id toObject(const Value& value) { return std::visit(ToObject(), value.storage()); }

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

Dictionary fromNSDictionary(NSDictionary* dictionary) {
  Dictionary values;
  for (id key in dictionary) {
    if (![key isKindOfClass:[NSString class]]) continue;
    values.insert_or_assign(*fromNSString(key), fromObject([dictionary objectForKey:key]));
  }
  return values;
}

NSDictionary* toNSDictionary(const Dictionary& dictionary) {
  NSMutableDictionary* values = [NSMutableDictionary dictionaryWithCapacity:dictionary.size()];
  for (const auto& [key, value] : dictionary) {
    [values setObject:toObject(value) forKey:toNSString(key)];
  }
  return [[values copy] autorelease];
}

Notification fromNSNotification(NSNotification* notification) {
  return {fromNSString([notification name]), fromNSDictionary([notification userInfo])};
}

}  // namespace hlv::objc
