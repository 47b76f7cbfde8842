// What the backend keeps, in JSON.
//
// Threading: pure functions; any. Readers throw `InvalidRecord`.
#pragma once

#include "Sandbox/JSON/Json.h"
#include "Sandbox/Records/BackendCard.h"
#include "Sandbox/Records/BackendGuest.h"

namespace hlv::sandbox {

Json jsonOf(const BackendCard& card);
/// Without cards that are missing: the minimal form.
Json jsonOf(const BackendGuest& guest);

AddressFields addressIn(const Json& json);
BackendCard cardIn(const Json& json);
BackendGuest guestIn(const Json& json);

}  // namespace hlv::sandbox
