#include "Matching/HLVSDKPaylevenPaymentInstrumentFinder.h"

#include <algorithm>

#include "Host/HLVSDKCoreKit/HLVSDKAsserts.h"
#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Platform/Secret.h"
#include "Platform/Send.h"

namespace hlv {
namespace {

using Instrument = PLVCreditCardPaymentInstrument;

bool isMissing(bool present, const char* name) {
  if (!present) HLVSDKAsserts::handleParameterAssert(name, std::nullopt);
  return !present;
}

template <class Matches>
std::shared_ptr<Instrument> lastMatch(const List<Instrument>& instruments, Matches matches) {
  const auto found = std::find_if(instruments.rbegin(), instruments.rend(), matches);
  return found == instruments.rend() ? nullptr : *found;
}

bool isUsableCard(const std::shared_ptr<Instrument>& instrument, const NullableString& lastDigits,
                  const NullableString& brand) {
  if (send(instrument, &Instrument::state) != 0) return false;
  const Secret number(instrument, &Instrument::pan);
  return hasSuffix(number.text(), lastDigits) &&
         isEqualToString(send(instrument, &Instrument::cardBrand), brand);
}

/// A number of fewer than four characters is its own last digits. Digits of other scripts take
/// several bytes, so characters are counted: those bytes that do not continue one.
NullableString lastFourDigitsOf(const NullableString& number) {
  if (!number) return std::nullopt;
  auto start = number->size();
  for (int characters = 0; start > 0 && characters < 4;) {
    const bool continuesACharacter =
        (static_cast<unsigned char>((*number)[--start]) & 0xC0) == 0x80;
    if (!continuesACharacter) ++characters;
  }
  return number->substr(start);
}

}  // namespace

std::shared_ptr<PLVCreditCardPaymentInstrument>
HLVSDKPaylevenPaymentInstrumentFinder::findPaylevenPaymentInstrumentIn(
    const NullableList<PLVCreditCardPaymentInstrument>& paylevenInstruments,
    const NullableString& lastFourDigits, const NullableString& brand) {
  if (isMissing(lastFourDigits.has_value(), "lastFourDigits")) return nullptr;
  if (isMissing(paylevenInstruments.has_value(), "paylevenInstruments")) return nullptr;
  if (isMissing(brand.has_value(), "brand")) return nullptr;

  return lastMatch(*paylevenInstruments, [&](const std::shared_ptr<Instrument>& instrument) {
    return isUsableCard(instrument, lastFourDigits, brand);
  });
}

std::shared_ptr<PLVCreditCardPaymentInstrument>
HLVSDKPaylevenPaymentInstrumentFinder::findPaylevenPaymentInstrumentIn(
    const NullableList<PLVCreditCardPaymentInstrument>& paylevenInstruments,
    const std::shared_ptr<HLVSDKPaymentInstrument>& halvoInstrument) {
  if (isMissing(halvoInstrument != nullptr, "halvoInstrument")) return nullptr;
  if (isMissing(paylevenInstruments.has_value(), "paylevenInstruments")) return nullptr;

  const Secret number(halvoInstrument, &HLVSDKPaymentInstrument::pan);
  const auto lastFourDigits = lastFourDigitsOf(number.text());
  const auto brand = HLVSDKCreditCard::cardBrandFromNumber(number.text());
  return lastMatch(*paylevenInstruments, [&](const std::shared_ptr<Instrument>& instrument) {
    return isUsableCard(instrument, lastFourDigits, brand) &&
           isEqualToString(send(instrument, &Instrument::expiryMonth),
                           halvoInstrument->expiryMonth()) &&
           isEqualToString(send(instrument, &Instrument::expiryYear),
                           halvoInstrument->expiryYear());
  });
}

}  // namespace hlv
