// Answers that go to the connection without the HTTP library: those that something befalls, and
// those that go on. Private to the services.
#pragma once

#include <functional>

#include "Services/Http/Connection.h"
#include "Services/Http/Exchange.h"

namespace hlv::services {

/// Sends an answer with a mishap or with events. Comes back when it is out, when the other side has
/// gone, when the events break, or when `pause` says so, which it asks between two looks at events.
///
/// Threading: the connection's.
void answerDirectly(Connection& connection, const HttpAnswer& answer,
                    const std::function<bool()>& pause);

}  // namespace hlv::services
