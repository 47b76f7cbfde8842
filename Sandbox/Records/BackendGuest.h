// One guest at the backend, as plain values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Sandbox/Records/BackendCard.h"

namespace hlv::sandbox {

struct BackendGuest {
  std::string email;
  /// Of two replies about a guest, the one with the higher revision is the later state.
  std::int64_t revision = 0;
  std::optional<std::string> paymentToken;
  /// Missing where they were not asked for.
  std::optional<std::vector<BackendCard>> cards;
};

}  // namespace hlv::sandbox
