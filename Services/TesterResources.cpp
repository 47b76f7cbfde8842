#include "Services/TesterResources.h"

#include "Services/BackendRecords.h"
#include "Services/Http/Refused.h"
#include "Services/ProviderRecords.h"
#include "Services/TesterRecords.h"
#include "Services/Wiped.h"

namespace hlv::services {
namespace {

void requirePossible(const std::string& problem, const std::string& code) {
  if (!problem.empty()) throw Refused{422, code, problem};
}

Json sidesOf(const sandbox::Sandbox& sandbox) {
  const auto cards = objectsOf(sandbox.backendCards());
  auto instruments = Json::array();
  for (const auto& instrument : sandbox.providerInstruments()) {
    instruments.push_back(jsonOf(instrument));
  }
  return {{"credit_cards", jsonOf(NullableList<HLVSDKCreditCard>(cards))},
          {"instruments", std::move(instruments)}};
}

}  // namespace

void armFault(sandbox::Sandbox& sandbox, const HttpRequest& request) {
  const auto fault = faultIn(parsedObject(request.body));
  requirePossible(sandbox.faults().arm(fault), "fault-refused");
}

void makeScene(sandbox::Sandbox& sandbox, const HttpRequest& request) {
  const auto body = parsedObject(request.body);
  requireKnownMembers(body, {"name"});
  requirePossible(sandbox.makeScene(textIn(body, "name").value_or("")), "scene-refused");
}

void addTesterRoutes(Routes& routes, const std::shared_ptr<sandbox::Sandbox>& sandbox) {
  const auto at = [](const char* name) { return std::vector<std::string>{"v1", "sandbox", name}; };
  const auto replyFaults = [sandbox](const Reply& reply) {
    reply({200, {{"faults", jsonOf(sandbox->faults().armed())}}});
  };
  routes.add("GET", at("faults"),
             [replyFaults](const HttpRequest&, const Reply& reply) { replyFaults(reply); });
  routes.add("POST", at("faults"),
             [sandbox, replyFaults](const HttpRequest& request, const Reply& reply) {
               armFault(*sandbox, request);
               replyFaults(reply);
             });
  routes.add("DELETE", at("faults"),
             [sandbox, replyFaults](const HttpRequest&, const Reply& reply) {
               sandbox->faults().clear();
               replyFaults(reply);
             });
  routes.add("GET", at("firings"), [sandbox](const HttpRequest&, const Reply& reply) {
    reply({200, {{"firings", jsonOf(sandbox->faults().firings())}}});
  });
  routes.add("GET", at("sides"), [sandbox](const HttpRequest&, const Reply& reply) {
    reply({200, sidesOf(*sandbox)});
  });
  routes.add("POST", at("scenes"), [sandbox](const HttpRequest& request, const Reply& reply) {
    makeScene(*sandbox, request);
    reply({200, sidesOf(*sandbox)});
  });
  routes.add("POST", at("instruments"), [sandbox](const HttpRequest& request, const Reply& reply) {
    auto body = parsedObject(request.body);
    auto card = takeNewCard(body);
    const Wiped number(card.pan);
    const Wiped code(card.cvv);
    requireKnownMembers(body, {"use_case", "credit_card"});
    card.useCase = textIn(body, "use_case").value_or(card.useCase);
    requirePossible(sandbox->plantInstrument(card), "instrument-refused");
    reply({201, sidesOf(*sandbox)});
  });
}

}  // namespace hlv::services
