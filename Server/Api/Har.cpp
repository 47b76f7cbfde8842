#include "Server/Api/RequestLog.h"

namespace hlv::server {
namespace {

Json entryOf(const Json& request, const std::string& host) {
  const auto& duration = request["duration_ms"];
  const auto& id = request["id"];
  return {{"startedDateTime", request["at"]},
          {"time", duration},
          {"request",
           {{"method", request["method"]},
            {"url", "http://" + host + request["path"].get<std::string>()},
            {"httpVersion", "HTTP/1.1"},
            {"cookies", Json::array()},
            {"headers", Json::array()},
            {"queryString", Json::array()},
            {"headersSize", -1},
            {"bodySize", request["request_bytes"]}}},
          {"response",
           {{"status", request["status"]},
            {"statusText", ""},
            {"httpVersion", "HTTP/1.1"},
            {"cookies", Json::array()},
            {"headers", {{{"name", "X-Request-Id"}, {"value", id}}}},
            {"content", {{"size", request["reply_bytes"]}, {"mimeType", "application/json"}}},
            {"redirectURL", ""},
            {"headersSize", -1},
            {"bodySize", request["reply_bytes"]}}},
          {"cache", Json::object()},
          {"timings", {{"send", 0}, {"wait", duration}, {"receive", 0}}},
          {"_id", id},
          {"_fault", request["fault"]}};
}

}  // namespace

Json RequestLog::harOf(const Json& requests, const std::string& host) {
  auto entries = Json::array();
  for (const auto& request : requests) entries.push_back(entryOf(request, host));
  return {{"log",
           {{"version", "1.2"},
            {"creator", {{"name", "paylevenkit"}, {"version", "1.0.0"}}},
            {"entries", std::move(entries)}}}};
}

}  // namespace hlv::server
