// What a service's reply says, by its status and body. Private to this folder.
//
// Threading: pure functions; any.
#pragma once

#include <string>

#include "Client/HttpLoop.h"

namespace hlv::client {

/// The body of a success, the error that the service returned, or a transport error for a reply
/// that is none of a service's.
ClientReply replyOf(int status, const std::string& body);

}  // namespace hlv::client
