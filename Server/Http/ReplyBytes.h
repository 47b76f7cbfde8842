// Replies as they travel. Private to the listener.
//
// Threading: any.
#pragma once

#include <boost/beast/http/message.hpp>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "Server/Http/HttpMessages.h"

namespace hlv::server {

/// "req_" and twenty letters.
std::string makeRequestID();

/// What a reply takes over from its request.
struct ReplyFrame {
  unsigned version = 11;
  bool isHead = false;
  bool keepsConnection = false;
};

/// The bytes of a reply that leave, in which pieces, and what follows; all as its fault has it.
struct OutgoingReply {
  enum class Then { next, drain, reset, hold, stream };
  std::string bytes;
  std::size_t piece = SIZE_MAX;
  std::chrono::milliseconds pause{0};
  Then then = Then::drain;
  /// 0 where no whole reply leaves.
  int status = 0;
};

/// With `events`, the head alone.
OutgoingReply outgoingReply(const HttpReply& reply, const std::string& requestID,
                            const ReplyFrame& frame);
/// The leave to send a body, for which a client may ask.
std::string serializedContinue();

}  // namespace hlv::server
