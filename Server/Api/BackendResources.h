// The backend over HTTP: guests, their sessions and their cards. Private to the server.
#pragma once

#include "Server/Api/Exchange.h"

namespace hlv::server {

/// It takes no card number: a text that may be one is refused.
///
/// Threading: while the routes are filled, one thread.
void addBackendRoutes(ApiRoutes& routes);

}  // namespace hlv::server
