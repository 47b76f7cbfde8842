// What the provider takes and keeps, in JSON.
//
// Threading: pure functions; any. Readers throw `InvalidRecord`.
#pragma once

#include <string>

#include "Sandbox/Cards/EnteredCard.h"
#include "Sandbox/JSON/Json.h"
#include "Sandbox/Records/ProviderInstrument.h"

namespace hlv::sandbox {

/// In a list of the provider's, which is of one use case, and whose JSON leaves it out.
Json jsonOf(const NumberedInstrument& listed);
NumberedInstrument listedInstrumentIn(const Json& json, const std::string& useCase);

/// As the provider stores it.
Json jsonOf(const ProviderInstrument& instrument);
ProviderInstrument instrumentIn(const Json& json);

/// With the card's number and security code; the texts are to be wiped.
Json newCardJson(const EnteredCard& card);
/// Takes the member "credit_card" of a request, and wipes what stood there.
CardFields takeNewCard(Json& request);

}  // namespace hlv::sandbox
