#include "Sandbox/JSON/SandboxRecords.h"

namespace hlv::sandbox {
namespace {

std::optional<std::uint64_t> seedIn(const Json& json) {
  const auto found = json.find("seed");
  if (found == json.end() || found->is_null()) return std::nullopt;
  // The greater half of the seeds is no signed number.
  if (found->is_number_unsigned()) return found->get<std::uint64_t>();
  const auto seed = requiredIntegerIn(json, "seed");
  if (seed < 0) throw InvalidRecord("wrong-type", "The member 'seed' is below zero.");
  return static_cast<std::uint64_t>(seed);
}

}  // namespace

Json jsonOf(const SandboxDescription& sandbox) {
  return {{"id", sandbox.id},
          {"problem", orNull(sandbox.problem)},
          {"seed", sandbox.seed ? Json(*sandbox.seed) : Json()},
          {"clock", sandbox.problem ? Json() : Json(sandbox.clock)},
          {"network", sandbox.isNetworkOn},
          {"in_memory", sandbox.isInMemory},
          {"created", sandbox.created},
          {"expires", orNull(sandbox.expires)},
          {"guests", sandbox.guests},
          {"urls",
           {{"backend", sandbox.backendURL},
            {"provider", sandbox.providerURL},
            {"control", sandbox.controlURL},
            {"console", sandbox.consoleURL}}}};
}

SandboxDescription sandboxIn(const Json& json) {
  const auto& urls = objectIn(json, "urls");
  return {requiredTextIn(json, "id"),
          textIn(json, "problem"),
          seedIn(json),
          textIn(json, "clock").value_or(""),
          requiredFlagIn(json, "network"),
          requiredFlagIn(json, "in_memory"),
          requiredTextIn(json, "created"),
          textIn(json, "expires"),
          requiredIntegerIn(json, "guests"),
          requiredTextIn(urls, "backend"),
          requiredTextIn(urls, "provider"),
          requiredTextIn(urls, "control"),
          requiredTextIn(urls, "console")};
}

Json jsonOf(const NewSandbox& sandbox) {
  auto json = Json::object();
  if (sandbox.id) json["id"] = *sandbox.id;
  if (sandbox.seed) json["seed"] = *sandbox.seed;
  if (sandbox.clock) json["clock"] = *sandbox.clock;
  if (sandbox.snapshot) json["snapshot"] = *sandbox.snapshot;
  if (sandbox.secondsToLive) json["ttl_seconds"] = *sandbox.secondsToLive;
  if (sandbox.isInMemory) json["in_memory"] = true;
  return json;
}

NewSandbox newSandboxIn(const Json& json) {
  requireKnownMembers(json, {"id", "seed", "clock", "snapshot", "ttl_seconds", "in_memory"});
  return {textIn(json, "id"),
          seedIn(json),
          textIn(json, "clock"),
          textIn(json, "snapshot"),
          integerIn(json, "ttl_seconds"),
          flagIn(json, "in_memory").value_or(false)};
}

Json jsonOf(const SnapshotDescription& snapshot) {
  return {{"snapshot", snapshot.id}, {"created", snapshot.created}, {"sandbox", snapshot.sandbox}};
}

SnapshotDescription snapshotIn(const Json& json) {
  return {requiredTextIn(json, "snapshot"), requiredTextIn(json, "created"),
          requiredTextIn(json, "sandbox")};
}

}  // namespace hlv::sandbox
