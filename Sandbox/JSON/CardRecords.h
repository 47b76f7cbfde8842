// What the backend keeps, in JSON.
//
// Threading: pure functions; any. Readers throw `InvalidRecord`.
#pragma once

#include <vector>

#include "Sandbox/JSON/Json.h"
#include "Sandbox/Records/BackendCard.h"
#include "Sandbox/Records/BackendGuest.h"

namespace hlv::sandbox {

Json jsonOf(const BackendCard& card);
Json jsonOf(const std::vector<BackendCard>& cards);
/// Without cards that are missing: the minimal form.
Json jsonOf(const BackendGuest& guest);

BackendCard cardIn(const Json& json);
std::vector<BackendCard> cardsIn(const Json::array_t& list);
BackendGuest guestIn(const Json& json);

}  // namespace hlv::sandbox
