#include "Services/Remote/RemoteTester.h"

#include <stdexcept>

#include "Services/Http/Refused.h"
#include "Services/ProviderRecords.h"
#include "Services/TesterRecords.h"

namespace hlv::services {
namespace {

std::string sentenceOf(const ErrorPtr& error) {
  return error ? error->localizedDescription().value_or("The services cannot be used.") : "";
}

constexpr const char* unreadable = "The services answer what cannot be read.";

}  // namespace

ClientAnswer RemoteTester::ask(const std::string& method, const std::string& name,
                               Json body) const {
  return provider_.send({method, "/v1/sandbox/" + name, std::move(body), "paylevenkit"});
}

template <class Read>
auto RemoteTester::told(const std::string& name, Read read) const {
  const auto answer = ask("GET", name);
  if (answer.error) throw std::runtime_error(sentenceOf(answer.error));
  try {
    return read(answer.body.at(name));
  } catch (const Json::exception&) {
    throw std::runtime_error(unreadable);
  } catch (const Refused&) {
    throw std::runtime_error(unreadable);
  }
}

std::string RemoteTester::plantInstrument(const sandbox::CardFields& card) {
  return sentenceOf(ask("POST", "instruments",
                        {{"use_case", card.useCase},
                         {"credit_card", newCardJson(*sandbox::EnteredCard::make(card))}})
                        .error);
}

std::string RemoteTester::makeScene(const std::string& name) {
  return sentenceOf(ask("POST", "scenes", {{"name", name}}).error);
}

std::string RemoteTester::arm(const sandbox::Fault& fault) {
  return sentenceOf(ask("POST", "faults", newFaultJson(fault)).error);
}

std::vector<sandbox::Fault> RemoteTester::armed() { return told("faults", faultsIn); }

std::vector<sandbox::Firing> RemoteTester::firings() { return told("firings", firingsIn); }

void RemoteTester::clearFaults() {
  const auto answer = ask("DELETE", "faults");
  if (answer.error) throw std::runtime_error(sentenceOf(answer.error));
}

}  // namespace hlv::services
