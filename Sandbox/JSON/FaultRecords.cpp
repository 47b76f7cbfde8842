#include "Sandbox/JSON/FaultRecords.h"

namespace hlv::sandbox {
namespace {

template <class Value>
Value require(Result<Value> named) {
  if (!named) throw InvalidRecord("fault-refused", named.problem());
  return *named;
}

Operation operationIn(const std::string& name) { return require(operationNamed(name)); }
FaultKind kindIn(const std::string& name) { return require(faultKindNamed(name)); }

Json numberOrNull(std::optional<std::int64_t> number) { return number ? Json(*number) : Json(); }

/// Null is no number; no member leaves the one that is there.
void readNumber(const Json& json, const char* key, std::optional<std::int64_t>& number) {
  if (!json.contains(key)) return;
  number = json[key].is_null() ? std::nullopt : integerIn(json, key);
}

std::vector<std::pair<std::string, std::string>> headersIn(const Json& json) {
  std::vector<std::pair<std::string, std::string>> headers;
  for (const auto& [name, value] : objectIn(json, "headers").items()) {
    if (!value.is_string()) throw InvalidRecord("wrong-type", "Headers hold texts only.");
    headers.emplace_back(name, value.get<std::string>());
  }
  return headers;
}

}  // namespace

Json newFaultJson(const Fault& fault) {
  auto headers = Json::object();
  for (const auto& [name, value] : fault.headers) headers[name] = value;
  return {{"operation", textOf(fault.operation)},
          {"kind", textOf(fault.kind)},
          {"times", numberOrNull(fault.remaining)},
          {"probability", fault.probability},
          {"delay_ms", fault.delayMilliseconds},
          {"spread_ms", fault.spreadMilliseconds},
          {"distribution", textOf(fault.distribution)},
          {"code", fault.code},
          {"status", numberOrNull(fault.status)},
          {"headers", std::move(headers)},
          {"bytes", numberOrNull(fault.bytes)},
          {"bytes_per_second", numberOrNull(fault.bytesPerSecond)},
          {"use_case", orNull(fault.useCase)}};
}

Fault newFaultIn(const Json& json) {
  Fault fault;
  fault.operation = operationIn(textIn(json, "operation").value_or(""));
  fault.kind = kindIn(textIn(json, "kind").value_or(""));
  return changedFault(std::move(fault), json);
}

Fault changedFault(Fault fault, const Json& json) {
  requireKnownMembers(
      json, {"operation", "kind", "times", "probability", "delay_ms", "spread_ms", "distribution",
             "code", "status", "headers", "bytes", "bytes_per_second", "use_case"});
  if (const auto name = textIn(json, "operation")) fault.operation = operationIn(*name);
  if (const auto name = textIn(json, "kind")) fault.kind = kindIn(*name);
  if (const auto name = textIn(json, "distribution")) {
    fault.distribution = require(distributionNamed(*name));
  }
  readNumber(json, "times", fault.remaining);
  fault.probability = integerIn(json, "probability").value_or(fault.probability);
  fault.delayMilliseconds = integerIn(json, "delay_ms").value_or(fault.delayMilliseconds);
  fault.spreadMilliseconds = integerIn(json, "spread_ms").value_or(fault.spreadMilliseconds);
  fault.code = integerIn(json, "code").value_or(fault.code);
  readNumber(json, "status", fault.status);
  if (json.contains("headers")) fault.headers = headersIn(json);
  readNumber(json, "bytes", fault.bytes);
  readNumber(json, "bytes_per_second", fault.bytesPerSecond);
  if (json.contains("use_case")) fault.useCase = textIn(json, "use_case");
  return fault;
}

Json jsonOf(const Fault& fault) {
  Json json = {{"number", fault.number}};
  json.update(newFaultJson(fault));
  return json;
}

Fault faultIn(const Json& json) {
  const auto number = requiredIntegerIn(json, "number");
  auto unnumbered = json;
  unnumbered.erase("number");
  auto fault = newFaultIn(unnumbered);
  fault.number = number;
  return fault;
}

Json jsonOf(const Firing& firing) {
  return {{"fault", firing.faultNumber},
          {"operation", textOf(firing.operation)},
          {"kind", textOf(firing.kind)}};
}

Firing firingIn(const Json& json) {
  return {requiredIntegerIn(json, "fault"), operationIn(requiredTextIn(json, "operation")),
          kindIn(requiredTextIn(json, "kind"))};
}

}  // namespace hlv::sandbox
