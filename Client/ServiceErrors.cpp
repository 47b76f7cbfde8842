#include "Client/ServiceErrors.h"

#include "Sandbox/Errors/SandboxError.h"
#include "Sandbox/Errors/TransportError.h"

namespace hlv::client {
namespace {

constexpr int deepest = 16;

ClientReply unreadable() {
  return {sandbox::transportError(sandbox::TransportErrorCode::unreadable), nullptr};
}

ErrorPtr errorIn(const Json& body) {
  const auto& error = sandbox::objectIn(body, "error");
  const auto message = sandbox::requiredTextIn(error, "message");
  return sandbox::SandboxError::make(sandbox::requiredTextIn(error, "domain"),
                                     sandbox::requiredIntegerIn(error, "number"),
                                     message.empty() ? std::nullopt : NullableString(message));
}

}  // namespace

ClientReply replyOf(int status, const std::string& body) {
  Json json;
  if (!body.empty()) {
    bool isTooDeep = false;
    const auto measure = [&isTooDeep](int depth, Json::parse_event_t, Json&) {
      isTooDeep = isTooDeep || depth > deepest;
      return !isTooDeep;
    };
    json = Json::parse(body, measure, false);
    if (json.is_discarded() || isTooDeep) return unreadable();
  }
  if (status >= 200 && status < 300) return {nullptr, std::move(json)};
  try {
    return {errorIn(json), nullptr};
  } catch (const sandbox::InvalidRecord&) {
    return unreadable();
  }
}

}  // namespace hlv::client
