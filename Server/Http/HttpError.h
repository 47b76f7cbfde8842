// How the code of a service rejects a request, and the one shape in which errors travel.
//
// Threading: pure functions and plain values; any.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Server/Http/HttpMessages.h"
#include "Values/Problem.h"

namespace hlv::sandbox::server {

/// The domain of what is rejected before a service sees it. The number is the status.
inline constexpr const char* requestErrorDomain = "HLVServiceRequestErrorDomain";

class HttpError : public Problem {
 public:
  /// `sentence` holds nothing of the request.
  HttpError(int errorStatus, std::string errorCode, const std::string& sentence)
      : HttpError(errorStatus, std::move(errorCode), sentence, requestErrorDomain, errorStatus) {}
  HttpError(int errorStatus, std::string errorCode, const std::string& sentence,
            std::string errorDomain, std::int64_t errorNumber)
      : Problem(sentence),
        status(errorStatus),
        code(std::move(errorCode)),
        domain(std::move(errorDomain)),
        number(errorNumber) {}

  int status;
  /// Stable: what a client may compare.
  std::string code;
  std::string domain;
  std::int64_t number;
  std::vector<std::pair<std::string, std::string>> headers;
};

/// {"error": {"code", "domain", "number", "message", "request_id"}}
HttpReply errorReply(const HttpError& error, const std::string& requestID);

}  // namespace hlv::sandbox::server
