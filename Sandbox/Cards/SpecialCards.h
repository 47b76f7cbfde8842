// What the services do with the test cards that do not simply succeed. Private to the sandbox.
//
// Threading: constant data; any.
#pragma once

#include <string>

namespace hlv::sandbox {

/// "declined", "other-state", "no-identifier", "no-token", or an empty string: what the provider
/// does with a number. Beyond the first, the names are those of faults.
std::string providerVariation(const std::string& pan);

/// The backend never sees a number, so it knows its test card by what it does see.
bool isRefusedByBackend(const std::string& brand, const std::string& lastFourDigits);

}  // namespace hlv::sandbox
