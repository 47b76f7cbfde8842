#include "Client/RemoteTester.h"

#include <utility>

#include "Client/HttpClient.h"
#include "Sandbox/JSON/FaultRecords.h"
#include "Sandbox/JSON/InstrumentRecords.h"
#include "Sandbox/JSON/SandboxRecords.h"

namespace hlv::client {
namespace {

/// `rest` begins with a slash, or is empty.
std::string control(const std::string& rest) { return "/v1/sandbox" + rest; }

std::string faultPath(std::int64_t fault) { return control("/faults/" + std::to_string(fault)); }

/// What `act` returns, or the sentence of the error that it meets.
template <class T = Done, class Act>
Result<T> resultOf(Act act) {
  try {
    return act();
  } catch (const ClientError& error) {
    return Result<T>::failure(error.what());
  }
}

Result<> post(const HttpClient& client, const std::string& rest, Json body,
              const NullableString& guest) {
  if (guest) body["guest"] = *guest;
  return resultOf([&] {
    client.ask("POST", control(rest), std::move(body));
    return Done();
  });
}

}  // namespace

RemoteTester::RemoteTester(std::shared_ptr<const HttpClient> client,
                           std::function<NullableString()> guest)
    : control_(std::move(client)), guest_(std::move(guest)) {}

Result<> RemoteTester::addOrphanInstrument(const sandbox::CardFields& card) {
  auto written = sandbox::newCardJson(*sandbox::EnteredCard::make(card));
  return post(*control_, "/instruments",
              {{"use_case", card.useCase}, {"credit_card", std::move(written)}}, guest_());
}

Result<> RemoteTester::makeScenario(sandbox::Scenario scenario) {
  return post(*control_, "/scenarios", {{"name", sandbox::textOf(scenario)}}, guest_());
}

Result<std::int64_t> RemoteTester::arm(const sandbox::Fault& fault) {
  return resultOf<std::int64_t>([&] {
    return control_->ask(
        "POST", control("/faults"), sandbox::newFaultJson(fault), [](const Json& body) {
          return sandbox::requiredIntegerIn(sandbox::objectIn(body, "fault"), "number");
        });
  });
}

std::vector<sandbox::Fault> RemoteTester::armed() {
  return control_->ask("GET", control("/faults"), nullptr, [](const Json& body) {
    return sandbox::recordsIn(sandbox::listIn(body, "faults"), sandbox::faultIn);
  });
}

std::vector<sandbox::Firing> RemoteTester::firings() {
  return control_->ask("GET", control("/firings"), nullptr, [](const Json& body) {
    return sandbox::recordsIn(sandbox::listIn(body, "firings"), sandbox::firingIn);
  });
}

void RemoteTester::clearFaults() { control_->ask("DELETE", control("/faults")); }

sandbox::Fault RemoteTester::changeFault(std::int64_t number, const sandbox::Fault& fault) const {
  return control_->ask("PATCH", faultPath(number), sandbox::newFaultJson(fault), sandbox::faultIn);
}

void RemoteTester::removeFault(std::int64_t number) const {
  control_->ask("DELETE", faultPath(number));
}

sandbox::SandboxDescription RemoteTester::reset() const {
  return control_->ask("POST", control("/reset"), Json::object(), sandbox::sandboxIn);
}

void RemoteTester::setNetworkOn(bool isOn) const {
  control_->ask("PUT", control("/network"), {{"on", isOn}});
}

}  // namespace hlv::client
