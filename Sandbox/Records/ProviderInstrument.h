// One instrument at the provider, as plain values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace hlv::sandbox {

struct ProviderInstrument {
  std::optional<std::string> identifier;
  std::string brand;
  std::string maskedPan;
  std::string useCase;
  std::string expiryMonth;
  std::string expiryYear;
  std::uint64_t state = 0;
};

}  // namespace hlv::sandbox
