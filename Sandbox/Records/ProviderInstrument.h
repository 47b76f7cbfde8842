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

/// One of a list, with the number of its row, which names it when it has no identifier.
struct NumberedInstrument {
  std::int64_t number = 0;
  ProviderInstrument values;
};

}  // namespace hlv::sandbox
