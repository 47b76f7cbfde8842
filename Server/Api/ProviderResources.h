// The provider over HTTP: users and their instruments. Private to the server.
#pragma once

#include "Server/Api/Exchange.h"

namespace hlv::server {

/// The card that is read from a request goes to the provider's rules and nowhere else.
///
/// Threading: while the routes are filled, one thread.
void addProviderRoutes(ApiRoutes& routes);

}  // namespace hlv::server
