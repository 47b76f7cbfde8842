#include "ObjC/Binding/Values.h"

#include <cstring>

#include "ObjC/Binding/Held.h"
#include "ObjC/Binding/Strings.h"

namespace hlv::objc {
namespace {

Value fromObject(id object);
id toObject(const Value& value);

Value fromNSNumber(NSNumber* number) {
  static const Class booleans = [@(YES) class];
  if ([number isKindOfClass:booleans]) return Value(static_cast<bool>([number boolValue]));
  if ([number isKindOfClass:[NSDecimalNumber class]])
    return Value(adapted<Adapter<Object, id>>(number));
  const char kind = *[number objCType];
  if (std::strchr("fd", kind)) return Value([number doubleValue]);
  if (std::strchr("ILQ", kind)) return Value(std::uint64_t{[number unsignedLongLongValue]});
  return Value(std::int64_t{[number longLongValue]});
}

Array fromNSArray(NSArray* array) {
  Array values;
  for (id object in array) values.push_back(fromObject(object));
  return values;
}

Value fromObject(id object) {
  if ([object isKindOfClass:[NSNull class]]) return Value();
  if ([object isKindOfClass:[NSString class]]) return Value(fromNSString(object));
  if ([object isKindOfClass:[NSNumber class]]) return fromNSNumber(object);
  if ([object isKindOfClass:[NSArray class]]) return Value(fromNSArray(object));
  if ([object isKindOfClass:[NSDictionary class]]) return Value(fromNSDictionary(object));
  return Value(adapted<Adapter<Object, id>>(object));
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

}  // namespace

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
  NSDictionary* const userInfo = [notification userInfo];
  Notification read{fromNSString([notification name]).value_or(""), fromNSDictionary(userInfo)};
  // The core reads integers and booleans, which any number can be read as.
  for (id key in userInfo) {
    id const number = [userInfo objectForKey:key];
    if (![key isKindOfClass:[NSString class]] || ![number isKindOfClass:[NSNumber class]]) continue;
    const bool isWhole = [number isEqual:@([number longLongValue])];
    read.userInfo[*fromNSString(key)] =
        isWhole ? Value(std::int64_t{[number longLongValue]}) : Value([number doubleValue]);
  }
  return read;
}

}  // namespace hlv::objc
