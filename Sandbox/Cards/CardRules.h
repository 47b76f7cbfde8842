// What makes a typed card acceptable.
//
// Threading: pure functions; any.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "Sandbox/Cards/EnteredCard.h"
#include "Sandbox/Errors/ErrorCodes.h"

namespace hlv::sandbox {

/// The month of a time in UTC.
template <class Duration>
std::chrono::year_month monthOf(std::chrono::sys_time<Duration> time) {
  const std::chrono::year_month_day date(std::chrono::floor<std::chrono::days>(time));
  return date.year() / date.month();
}

/// The first rule that a card breaks.
struct BrokenRule {
  CardErrorCode code;
  /// For the person who typed; says nothing of the number or the security code.
  std::string sentence;
  /// For the developer, with the same restraint.
  std::string detail;
};

/// Checks number, expiry in a month, security code and holder, in this order. Expects normalised
/// fields.
[[nodiscard]] std::optional<BrokenRule> brokenRule(const CardFields& card,
                                                   std::chrono::year_month month);
/// Whether a brand has numbers of these digits, by prefix, length and checksum.
bool isCardNumber(std::string_view digits);
/// A card can be used until its month is over. Expects normalised fields.
bool hasExpired(const std::string& expiryMonth, const std::string& expiryYear,
                std::chrono::year_month month);
/// Whether instruments are stored under this use case.
bool isUseCase(std::string_view name);
BrokenRule unknownUseCase();

/// The same card with blanks and hyphens taken out of the number, a two-digit month and a
/// four-digit year. What cannot be read stays as it was typed.
[[nodiscard]] CardFields normalised(const CardFields& card);

/// Asterisks, and the last four digits.
[[nodiscard]] std::string maskedPan(std::string_view pan);
[[nodiscard]] std::string lastFourDigits(std::string_view pan);

}  // namespace hlv::sandbox
