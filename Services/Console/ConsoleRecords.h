// The story, the two sides and what can be chosen, in JSON. Private to the services.
//
// Threading: pure functions of a sandbox; any.
#pragma once

#include <vector>

#include "Sandbox/Journal.h"
#include "Sandbox/Sandbox.h"
#include "Services/Console/App.h"
#include "Services/Http/Exchange.h"
#include "Services/Json.h"

namespace hlv::services {

Json jsonOf(const std::vector<sandbox::Journal::Operation>& story);
/// Guest, network, the two sides in pairs, the armed faults, and the oldest operation that is kept.
Json truthOf(sandbox::Sandbox& sandbox);
/// Test cards, without their numbers; scenes; faults.
Json choices();
/// How an operation of the app came out.
HttpAnswer answerOf(const App::Outcome& outcome);

/// Throws `Refused`.
sandbox::AddressFields addressIn(const Json& json);

}  // namespace hlv::services
