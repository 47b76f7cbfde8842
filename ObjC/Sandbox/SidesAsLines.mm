#include "ObjC/Sandbox/SidesAsLines.h"

#include <algorithm>
#include <string>

#include "ObjC/Binding/Strings.h"

namespace hlv::sandbox::objc {
namespace {

std::string lineOf(const std::string& brand, const std::string& lastFourDigits,
                   const std::string& useCase, const std::optional<std::string>& identifier) {
  return brand + " .. " + lastFourDigits + ", " + useCase + ", " +
         identifier.value_or("no identifier");
}

std::string lineOf(const BackendCard& card) {
  return lineOf(card.brand, card.lastFourDigits, card.useCase, card.externalIdentifier);
}

std::string lineOf(const ProviderInstrument& instrument) {
  const auto& pan = instrument.maskedPan;
  const auto line =
      lineOf(instrument.brand, pan.substr(pan.size() - std::min<std::size_t>(pan.size(), 4)),
             instrument.useCase, instrument.identifier);
  return instrument.state == 0 ? line : line + ", cannot be used";
}

template <class Entry>
NSArray<NSString*>* lines(const std::vector<Entry>& entries) {
  NSMutableArray* lines = [NSMutableArray arrayWithCapacity:entries.size()];
  for (const auto& entry : entries) [lines addObject:hlv::objc::toNSString(lineOf(entry))];
  return lines;
}

}  // namespace

NSArray<NSString*>* linesOf(const std::vector<BackendCard>& cards) { return lines(cards); }

NSArray<NSString*>* linesOf(const std::vector<ProviderInstrument>& instruments) {
  return lines(instruments);
}

}  // namespace hlv::sandbox::objc
