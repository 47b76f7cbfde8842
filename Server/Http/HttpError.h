// How the code of a service rejects a request, and the one shape in which errors travel.
//
// Threading: pure functions and plain values; any.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "Server/Http/HttpMessages.h"

namespace hlv::server {

/// The domain of what is rejected before a service sees it. The number is the status.
inline constexpr const char* requestErrorDomain = "HLVServiceRequestErrorDomain";

class HttpError : public std::exception {
 public:
  /// `sentence` holds nothing of the request.
  HttpError(int errorStatus, std::string errorCode, std::string errorSentence)
      : status(errorStatus), code(std::move(errorCode)), sentence(std::move(errorSentence)) {}
  const char* what() const noexcept override { return sentence.c_str(); }

  int status;
  /// Stable: what a client may compare.
  std::string code;
  std::string sentence;
  std::vector<std::pair<std::string, std::string>> headers;
};

HttpReply errorReply(const HttpError& error, const std::string& requestID);
/// {"error": {"code", "domain", "number", "message", "request_id"}}
HttpReply errorReply(int status, const std::string& code, const std::string& domain,
                     std::int64_t number, const std::string& message, const std::string& requestID);

}  // namespace hlv::server
