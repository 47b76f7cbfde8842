#include "ObjC/Binding/Strings.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace hlv::objc {
namespace {

// Foundation's own conversions refuse half a surrogate pair, which an app gets by cutting a string.
// Here it takes three bytes, as any character of its size would, and comes back as it was.

constexpr char32_t highFirst = 0xD800, lowFirst = 0xDC00, lowLast = 0xDFFF;

bool isHigh(char32_t unit) { return unit >= highFirst && unit < lowFirst; }
bool isLow(char32_t unit) { return unit >= lowFirst && unit <= lowLast; }

/// Overwrites characters that are not needed any more: they may be a card's.
template <class Characters>
void wipe(Characters& characters) {
  volatile auto* const first = characters.data();
  for (std::size_t i = 0; i < characters.size(); ++i) first[i] = 0;
}

/// Calls `take` with every code point of `string`, in order.
template <class Take>
void eachCodePoint(NSString* string, Take take) {
  std::array<unichar, 128> part;
  char32_t high = 0;
  const NSUInteger length = [string length];
  for (NSUInteger at = 0; at < length; at += part.size()) {
    const NSUInteger count = std::min<NSUInteger>(part.size(), length - at);
    [string getCharacters:part.data() range:NSMakeRange(at, count)];
    for (NSUInteger i = 0; i < count; ++i) {
      const char32_t unit = part[i];
      if (high && isLow(unit)) {
        take(0x10000 + ((high - highFirst) << 10) + (unit - lowFirst));
        high = 0;
        continue;
      }
      if (high) take(high);
      high = isHigh(unit) ? unit : 0;
      if (!high) take(unit);
    }
  }
  if (high) take(high);
  wipe(part);
}

std::size_t bytesOf(char32_t point) {
  return point < 0x80 ? 1 : point < 0x800 ? 2 : point < 0x10000 ? 3 : 4;
}

[[gnu::noinline]] void append(std::string& text, char32_t point) {
  const std::size_t bytes = bytesOf(point);
  if (bytes == 1) {
    text.push_back(static_cast<char>(point));
    return;
  }
  text.push_back(static_cast<char>(0xF00 >> bytes | point >> 6 * (bytes - 1)));
  for (std::size_t left = bytes - 1; left > 0; --left) {
    text.push_back(static_cast<char>(0x80 | (point >> 6 * (left - 1) & 0x3F)));
  }
}

/// Takes one code point off the front. A byte that begins none is the replacement character.
char32_t takeCodePoint(std::string_view& text) {
  const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned first = byteAt(0);
  const std::size_t bytes = first < 0x80   ? 1
                            : first < 0xC0 ? 0
                            : first < 0xE0 ? 2
                            : first < 0xF0 ? 3
                                           : 4;
  char32_t point = bytes == 1 ? first : first & (0x7Fu >> bytes);
  std::size_t read = 1;
  while (read < bytes && read < text.size() && (byteAt(read) & 0xC0) == 0x80) {
    point = point << 6 | (byteAt(read++) & 0x3F);
  }
  const bool isWhole = bytes && read == bytes && point < 0x110000 && bytesOf(point) == bytes;
  text.remove_prefix(isWhole ? bytes : 1);
  return isWhole ? point : 0xFFFD;
}

/// To be released by the caller.
NSString* newStringOfUnits(const std::u16string& units) {
  NSString* const made =
      [[NSString alloc] initWithCharacters:reinterpret_cast<const unichar*>(units.data())
                                    length:units.size()];
  if ([made length] == units.size()) return made;
  // GNUstep takes unit by unit what it refuses as a whole.
  [made release];
  NSMutableString* const any = [[NSMutableString alloc] initWithCapacity:units.size()];
  for (const unichar unit : units) [any appendFormat:@"%C", unit];
  return any;
}

}  // namespace

NullableString fromNSString(NSString* string) {
  NullableString text;
  if (!string) return text;
  std::size_t size = 0;
  eachCodePoint(string, [&](char32_t point) { size += bytesOf(point); });
  // At once as long as it becomes: a string that grows leaves its characters behind.
  text.emplace().reserve(size);
  eachCodePoint(string, [&](char32_t point) { append(*text, point); });
  return text;
}

NSString* newNSString(const NullableString& string) {
  if (!string) return nil;
  if (std::all_of(string->begin(), string->end(), [](unsigned char c) { return c < 0x80; })) {
    return [[NSString alloc] initWithBytes:string->data()
                                    length:string->size()
                                  encoding:NSASCIIStringEncoding];
  }
  std::u16string units;
  units.reserve(string->size());
  for (std::string_view rest = *string; !rest.empty();) {
    const char32_t point = takeCodePoint(rest);
    if (point < 0x10000) {
      units.push_back(static_cast<char16_t>(point));
    } else {
      units.push_back(static_cast<char16_t>(highFirst + ((point - 0x10000) >> 10)));
      units.push_back(static_cast<char16_t>(lowFirst + ((point - 0x10000) & 0x3FF)));
    }
  }
  NSString* const made = newStringOfUnits(units);
  wipe(units);
  return made;
}

NSString* toNSString(const NullableString& string) { return [newNSString(string) autorelease]; }

}  // namespace hlv::objc
