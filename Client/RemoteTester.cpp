#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Client/RemoteService.h"
#include "Sandbox/JSON/FaultRecords.h"
#include "Sandbox/JSON/InstrumentRecords.h"

namespace hlv::client {
namespace {

/// `rest` begins with a slash, or is empty.
std::string control(const std::string& rest) { return "/v1/sandbox" + rest; }

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

/// Asks the test control of a sandbox, below the provider's URL, and waits for the replies.
///
/// Threading: any.
class RemoteTester final : public sandbox::Tester {
 public:
  RemoteTester(HttpClient control, std::function<NullableString()> guest)
      : control_(std::move(control)), guest_(std::move(guest)) {}

  Result<> addOrphanInstrument(const sandbox::CardFields& card) override {
    auto written = sandbox::newCardJson(*sandbox::EnteredCard::make(card));
    return post(control_, "/instruments",
                {{"use_case", card.useCase}, {"credit_card", std::move(written)}}, guest_());
  }
  Result<> makeScenario(sandbox::Scenario scenario) override {
    return post(control_, "/scenarios", {{"name", sandbox::textOf(scenario)}}, guest_());
  }

  Result<std::int64_t> arm(const sandbox::Fault& fault) override {
    return resultOf<std::int64_t>([&] {
      return control_.ask(
          "POST", control("/faults"), sandbox::newFaultJson(fault), [](const Json& body) {
            return sandbox::requiredIntegerIn(sandbox::objectIn(body, "fault"), "number");
          });
    });
  }
  std::vector<sandbox::Fault> armed() override {
    return control_.ask("GET", control("/faults"), nullptr, [](const Json& body) {
      return sandbox::recordsIn(sandbox::listIn(body, "faults"), sandbox::faultIn);
    });
  }
  std::vector<sandbox::Firing> firings() override {
    return control_.ask("GET", control("/firings"), nullptr, [](const Json& body) {
      return sandbox::recordsIn(sandbox::listIn(body, "firings"), sandbox::firingIn);
    });
  }
  void clearFaults() override { control_.ask("DELETE", control("/faults")); }

 private:
  const HttpClient control_;
  const std::function<NullableString()> guest_;
};

}  // namespace

std::shared_ptr<sandbox::Tester> remoteTester(HttpClient control,
                                              std::function<NullableString()> guest) {
  return std::make_shared<RemoteTester>(std::move(control), std::move(guest));
}

}  // namespace hlv::client
