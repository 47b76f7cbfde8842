// Observing and posting notifications by name.
#pragma once

#include <functional>
#include <memory>

#include "Platform/Export.h"
#include "Platform/Notification.h"

namespace hlv {

/// Keeps one observation alive; destroying it ends the observation.
class HLV_EXPORT Observation {
 public:
  Observation() = default;
  Observation(const Observation&) = delete;
  Observation& operator=(const Observation&) = delete;
  virtual ~Observation() = default;
};

/// Implementations must
/// - deliver to the observers of a name, whoever posts it, in the order in which they began;
/// - deliver on the posting thread, before `post` returns, and hold no lock meanwhile: an observer
///   may post, begin to observe, and end any observation, its own included;
/// - skip an observer that ended before its turn came, and one that began during the post;
/// - take `observe`, `post` and the end of an observation on any thread.
///
/// An observation that ends on one thread while another is inside its handler does not wait:
/// handlers refer weakly to what they serve.
class HLV_EXPORT NotificationCenter {
 public:
  using Handler = std::function<void(const Notification&)>;

  NotificationCenter() = default;
  NotificationCenter(const NotificationCenter&) = delete;
  NotificationCenter& operator=(const NotificationCenter&) = delete;
  virtual ~NotificationCenter() = default;

  /// Observes `name` until the result is destroyed. A missing name is never posted.
  [[nodiscard]] virtual std::unique_ptr<Observation> observe(const NullableString& name,
                                                             Handler handler) = 0;
  virtual void post(const Notification& notification) = 0;
};

}  // namespace hlv
