// The guest's session with the host.
#pragma once

#include <memory>

#include "Host/Host.h"
#include "Values/Export.h"
#include "Values/Object.h"

namespace hlv {

/// Implementations must take calls from any thread.
class HLV_EXPORT HLVSession : public Object {
 public:
  /// `+activeSession`. Null when there is none, which counts as not authorised.
  static std::shared_ptr<HLVSession> activeSession() { return Host::ask(&Host::activeSession); }

  /// `-isAuthorized`
  virtual bool isAuthorized() const = 0;
};

}  // namespace hlv
