// Replies as they travel. Private to the listener.
//
// Threading: any.
#pragma once

#include <boost/beast/http/message.hpp>
#include <string>

#include "Server/Http/HttpMessages.h"

namespace hlv::sandbox::server {

/// "req_" and twenty letters.
std::string makeRequestID();

/// What a reply takes over from its request.
struct ReplyFrame {
  unsigned version = 11;
  bool isHead = false;
  bool keepsConnection = false;
};

/// As its fault has it; with `events`, the head alone.
OutgoingReply outgoingReply(const HttpReply& reply, const std::string& requestID,
                            const ReplyFrame& frame);
}  // namespace hlv::sandbox::server
