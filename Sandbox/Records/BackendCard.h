// One card at the backend, as plain values.
#pragma once

#include <optional>
#include <string>

#include "Sandbox/Records/EnteredAddress.h"

namespace hlv::sandbox {

struct BackendCard {
  std::string halvoID;
  std::string brand;
  std::string lastFourDigits;
  std::string useCase;
  std::optional<std::string> externalIdentifier;
  std::string cardHolder;
  std::string expiryMonth;
  std::string expiryYear;
  AddressFields billingAddress;
};

}  // namespace hlv::sandbox
