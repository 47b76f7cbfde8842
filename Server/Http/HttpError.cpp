#include "Server/Http/HttpError.h"

#include <nlohmann/json.hpp>

namespace hlv::sandbox::server {

HttpReply errorReply(const HttpError& error, const std::string& requestID) {
  using Json = nlohmann::ordered_json;
  const Json body = {{"error",
                      {{"code", error.code},
                       {"domain", error.domain},
                       {"number", error.number},
                       {"message", error.what()},
                       {"request_id", requestID}}}};
  return {.status = error.status,
          .body = body.dump(-1, ' ', false, Json::error_handler_t::replace),
          .headers = error.headers,
          .code = error.code};
}

}  // namespace hlv::sandbox::server
