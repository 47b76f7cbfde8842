#include "Client/RemoteTester.h"

#include <utility>

#include "Client/ControlClient.h"
#include "Sandbox/JSON/FaultRecords.h"
#include "Sandbox/JSON/InstrumentRecords.h"
#include "Sandbox/JSON/SandboxRecords.h"

namespace hlv::client {
namespace {

/// `rest` begins with a slash, or is empty.
std::string control(const std::string& rest) { return "/v1/sandbox" + rest; }

std::string faultPath(std::int64_t fault) { return control("/faults/" + std::to_string(fault)); }

/// The sentence of the error that `act` meets, or an empty string.
template <class Act>
std::string problemOf(Act act) {
  try {
    act();
    return "";
  } catch (const ClientError& error) {
    return error.what();
  }
}

Json withGuest(Json body, const NullableString& guest) {
  if (guest) body["guest"] = *guest;
  return body;
}

}  // namespace

RemoteTester::RemoteTester(std::shared_ptr<const ControlClient> controlClient,
                           std::function<NullableString()> guest)
    : control_(std::move(controlClient)), guest_(std::move(guest)) {}

RemoteTester::~RemoteTester() = default;

std::string RemoteTester::addOrphanInstrument(const sandbox::CardFields& card) {
  return problemOf([&] {
    control_->send(
        "POST", control("/instruments"),
        withGuest({{"use_case", card.useCase},
                   {"credit_card", sandbox::newCardJson(*sandbox::EnteredCard::make(card))}},
                  guest_()));
  });
}

std::string RemoteTester::makeScenario(const std::string& name) {
  return problemOf([&] {
    control_->send("POST", control("/scenarios"), withGuest({{"name", name}}, guest_()));
  });
}

std::string RemoteTester::arm(const sandbox::Fault& fault, std::int64_t* number) {
  return problemOf([&] {
    const auto armed = control_->send(
        "POST", control("/faults"), sandbox::newFaultJson(fault), [](const Json& body) {
          return sandbox::requiredIntegerIn(sandbox::objectIn(body, "fault"), "number");
        });
    if (number) *number = armed;
  });
}

std::vector<sandbox::Fault> RemoteTester::armed() {
  return control_->send("GET", control("/faults"), nullptr, [](const Json& body) {
    std::vector<sandbox::Fault> faults;
    for (const auto& item : sandbox::listIn(body, "faults")) {
      faults.push_back(sandbox::faultIn(item));
    }
    return faults;
  });
}

std::vector<sandbox::Firing> RemoteTester::firings() {
  return control_->send("GET", control("/firings"), nullptr, [](const Json& body) {
    std::vector<sandbox::Firing> firings;
    for (const auto& item : sandbox::listIn(body, "firings")) {
      firings.push_back(sandbox::firingIn(item));
    }
    return firings;
  });
}

void RemoteTester::clearFaults() { control_->send("DELETE", control("/faults")); }

sandbox::Fault RemoteTester::fault(std::int64_t number) const {
  return control_->send("GET", faultPath(number), nullptr, sandbox::faultIn);
}

sandbox::Fault RemoteTester::changeFault(std::int64_t number, const sandbox::Fault& fault) const {
  return control_->send("PATCH", faultPath(number), sandbox::newFaultJson(fault), sandbox::faultIn);
}

void RemoteTester::removeFault(std::int64_t number) const {
  control_->send("DELETE", faultPath(number));
}

sandbox::SandboxDescription RemoteTester::reset() const {
  return control_->send("POST", control("/reset"), Json::object(), sandbox::sandboxIn);
}

bool RemoteTester::isNetworkOn() const {
  return control_->send("GET", control("/network"), nullptr,
                        [](const Json& body) { return sandbox::requiredFlagIn(body, "on"); });
}

void RemoteTester::setNetworkOn(bool isOn) const {
  control_->send("PUT", control("/network"), {{"on", isOn}});
}

}  // namespace hlv::client
