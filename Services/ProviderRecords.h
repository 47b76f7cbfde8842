// What the provider takes and keeps, in JSON; both ends of a connection read and write it here.
// Private to the services.
//
// Threading: pure functions; any.
#pragma once

#include "Host/PaylevenFramework/PLVPaymentInstrument.h"
#include "Platform/List.h"
#include "Sandbox/EnteredCard.h"
#include "Services/Json.h"

namespace hlv::services {

/// A missing list becomes null.
Json jsonOf(const NullableList<PLVCreditCardPaymentInstrument>& instruments);
/// With the card's number and security code; the text is to be wiped.
Json newCardJson(const sandbox::EnteredCard& card);

/// Throws `Json::exception` for what is no such list.
NullableList<PLVCreditCardPaymentInstrument> instrumentsIn(const Json& json,
                                                           const std::string& useCase);
/// Takes a new card out of a request, and wipes what stood there. Throws `Refused`.
sandbox::CardFields takeNewCard(Json& request);

}  // namespace hlv::services
