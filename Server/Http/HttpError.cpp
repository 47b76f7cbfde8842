#include "Server/Http/HttpError.h"

#include <nlohmann/json.hpp>

namespace hlv::server {

HttpReply errorReply(const HttpError& error, const std::string& requestID) {
  auto reply = errorReply(error.status, error.code, requestErrorDomain, error.status, error.what(),
                          requestID);
  reply.headers = error.headers;
  return reply;
}

HttpReply errorReply(int status, const std::string& code, const std::string& domain,
                     std::int64_t number, const std::string& message,
                     const std::string& requestID) {
  using Json = nlohmann::ordered_json;
  const Json body = {{"error",
                      {{"code", code},
                       {"domain", domain},
                       {"number", number},
                       {"message", message},
                       {"request_id", requestID}}}};
  return {.status = status,
          .body = body.dump(-1, ' ', false, Json::error_handler_t::replace),
          .code = code};
}

}  // namespace hlv::server
