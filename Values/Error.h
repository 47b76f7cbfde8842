// The platform's error object.
//
// Threading: immutable; any thread.
#pragma once

#include <cstdint>
#include <memory>

#include "Values/Export.h"
#include "Values/NullableString.h"
#include "Values/Object.h"
#include "Values/Text.h"

namespace hlv {

/// Why something failed. The host's error facade makes the kit's errors; the backend and the
/// provider make their own. An error that passes through the kit stays the same object.
///
/// Implementations must
/// - never change after they were made;
/// - keep card numbers masked to their last four digits, and security codes out, in every text.
class HLV_EXPORT Error : public Object {
 public:
  virtual Text domain() const = 0;
  virtual std::int64_t code() const = 0;
  /// For the person who uses the app; may be missing.
  virtual NullableString localizedDescription() const = 0;
  /// For the developer of the app; present on errors that the host made.
  virtual NullableString developerMessage() const = 0;
};

/// Null means that nothing failed.
using ErrorPtr = std::shared_ptr<const Error>;

}  // namespace hlv
