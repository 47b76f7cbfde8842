#include "Services/TesterRecords.h"

namespace hlv::services {

Json newFaultJson(const sandbox::Fault& fault) {
  return {{"operation", fault.operation},
          {"kind", fault.kind},
          {"times", fault.remaining ? Json(*fault.remaining) : Json()},
          {"probability", fault.probability},
          {"delay_ms", fault.delayMilliseconds},
          {"spread_ms", fault.spreadMilliseconds},
          {"code", fault.code},
          {"use_case", orNull(fault.useCase)}};
}

Json jsonOf(const std::vector<sandbox::Fault>& faults) {
  auto array = Json::array();
  for (const auto& fault : faults) {
    array.push_back({{"number", fault.number}});
    array.back().update(newFaultJson(fault));
  }
  return array;
}

Json jsonOf(const std::vector<sandbox::Firing>& firings) {
  auto array = Json::array();
  for (const auto& firing : firings) {
    array.push_back(
        {{"fault", firing.faultNumber}, {"operation", firing.operation}, {"kind", firing.kind}});
  }
  return array;
}

Json jsonOf(const sandbox::ProviderInstrument& instrument) {
  return {{"identifier", orNull(instrument.identifier)},
          {"brand", instrument.brand},
          {"masked_number", instrument.maskedPan},
          {"use_case", instrument.useCase},
          {"expiry_month", instrument.expiryMonth},
          {"expiry_year", instrument.expiryYear},
          {"state", instrument.state}};
}

sandbox::Fault faultIn(const Json& json) {
  requireKnownMembers(json, {"operation", "kind", "times", "probability", "delay_ms", "spread_ms",
                             "code", "use_case"});
  sandbox::Fault fault;
  fault.operation = textIn(json, "operation").value_or("");
  fault.kind = textIn(json, "kind").value_or("");
  const auto times = json.find("times");
  const bool isForEver = times != json.end() && times->is_null();
  fault.remaining = isForEver ? std::nullopt : std::optional(integerIn(json, "times", 1));
  fault.probability = integerIn(json, "probability", fault.probability);
  fault.delayMilliseconds = integerIn(json, "delay_ms", 0);
  fault.spreadMilliseconds = integerIn(json, "spread_ms", 0);
  fault.code = integerIn(json, "code", fault.code);
  fault.useCase = textIn(json, "use_case");
  return fault;
}

std::vector<sandbox::Fault> faultsIn(const Json& json) {
  std::vector<sandbox::Fault> faults;
  for (auto item : json.get_ref<const Json::array_t&>()) {
    const auto number = item.at("number").get<std::int64_t>();
    item.erase("number");
    faults.push_back(faultIn(item));
    faults.back().number = number;
  }
  return faults;
}

std::vector<sandbox::Firing> firingsIn(const Json& json) {
  std::vector<sandbox::Firing> firings;
  for (const auto& item : json.get_ref<const Json::array_t&>()) {
    firings.push_back({item.at("fault").get<std::int64_t>(),
                       item.at("operation").get<std::string>(),
                       item.at("kind").get<std::string>()});
  }
  return firings;
}

std::vector<sandbox::ProviderInstrument> storedInstrumentsIn(const Json& json) {
  std::vector<sandbox::ProviderInstrument> instruments;
  for (const auto& item : json.get_ref<const Json::array_t&>()) {
    instruments.push_back(
        {textOrMissing(item.at("identifier")), item.at("brand").get<std::string>(),
         item.at("masked_number").get<std::string>(), item.at("use_case").get<std::string>(),
         item.at("expiry_month").get<std::string>(), item.at("expiry_year").get<std::string>(),
         item.at("state").get<std::uint64_t>()});
  }
  return instruments;
}

}  // namespace hlv::services
