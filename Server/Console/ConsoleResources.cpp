#include <set>
#include <sstream>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Sandbox/Backend/StoredCard.h"
#include "Sandbox/Cards/CardBrands.h"
#include "Sandbox/Cards/TestCards.h"
#include "Sandbox/Faults/Fault.h"
#include "Sandbox/JSON/CardRecords.h"
#include "Sandbox/JSON/InstrumentRecords.h"
#include "Sandbox/Records/AddressKeys.h"
#include "Sandbox/Testing/Scenario.h"
#include "Server/Console/Console.h"
#include "Values/Names.h"
#include "Values/Wiped.h"

namespace hlv::sandbox::server {
namespace {

namespace keys = addressKeys;
using AppPtr = std::shared_ptr<App>;

/// How an operation of the app came out.
HttpReply replyOf(const App::Operation& operation, const std::string& requestID) {
  if (operation.refusal) return errorReply(*operation.refusal, requestID);
  const auto outcome = operation.call ? operation.call->outcome() : AppCall::Outcome();
  const auto card = std::dynamic_pointer_cast<StoredCard>(outcome.card);
  Json body = {{"operation", operation.number},
               {"answers", outcome.completions},
               {"credit_card", card ? jsonOf(card->values()) : Json()},
               {"failure", nullptr}};
  if (const auto& error = outcome.error) {
    body["failure"] = {{"domain", error->domain()},
                       {"number", error->code()},
                       {"message", error->localizedDescription().value_or("")}};
  }
  return jsonReply(200, body);
}

App::Done replying(const Exchange& exchange) {
  return [reply = exchange.reply, trace = exchange.trace,
          id = exchange.request.id](const App::Operation& operation) {
    trace->add("client", "app", "operation " + std::to_string(operation.number));
    reply(replyOf(operation, id));
  };
}

/// A test card by its name, or a card as somebody typed it.
std::shared_ptr<EnteredCard> takeCard(Json& body) {
  CardFields fields;
  const Wiped number(fields.pan);
  const Wiped code(fields.cvv);
  if (const auto name = textIn(body, "test_card")) {
    const auto* card = findTestCard(*name);
    if (!card) throw HttpError(422, "no-such-test-card", "There is no test card of that name.");
    fields = card->fields;
  } else {
    fields = takeNewCard(body);
  }
  requireKnownMembers(body, {"test_card", "credit_card", "use_case", "billing_address"});
  fields.useCase = textIn(body, "use_case").value_or(fields.useCase);
  return EnteredCard::make(std::move(fields));
}

std::shared_ptr<EnteredAddress> addressOf(const Json& json) {
  requireKnownMembers(json,
                      {keys::street, keys::city, keys::countryCode, keys::zip, keys::businessName});
  return EnteredAddress::make(addressIn(json));
}

/// The sandboxes that a page names, with commas between; without any, the one whose path it asked.
std::set<std::string> followedBy(const Exchange& exchange) {
  std::istringstream named(exchange.request.queryValue("sandbox").value_or(exchange.sandbox->id()));
  std::set<std::string> sandboxes;
  for (std::string id; std::getline(named, id, ',');) sandboxes.insert(id);
  return sandboxes;
}

/// Test cards, without their numbers; scenarios; the operations with the kinds of faults they have.
Json choices() {
  constexpr std::size_t shown = 4;
  auto cards = Json::array();
  for (const auto& card : testCards()) {
    cards.push_back({{"name", card.name},
                     {"brand", findCardBrand(card.fields.pan)->name},
                     {"last_four_digits", card.fields.pan.substr(card.fields.pan.size() - shown)},
                     {"effect", card.effect}});
  }
  auto operations = Json::array();
  for (const auto operation : allOperations()) {
    operations.push_back({{"name", textOf(operation)},
                          {"kinds", namesOf(kindsOf(operation))},
                          {"has_use_case", hasUseCase(operation)}});
  }
  return {{"test_cards", std::move(cards)},
          {"use_cases", {"default", "private", "business"}},
          {"scenarios", namesOf(allScenarios())},
          {"operations", std::move(operations)}};
}

void addData(ApiRoutes& routes, Registry& registry) {
  routes.add("GET", "events", [&registry](const Exchange& exchange) {
    exchange.reply({.events = liveFeed(registry, followedBy(exchange))});
  });
  routes.read("stored", [](Database& database, const Exchange&) {
    return jsonReply(200, storedData(database));
  });
  routes.add("GET", "choices",
             [](const Exchange& exchange) { exchange.reply(jsonReply(200, choices())); });
}

std::shared_ptr<HLVSDKGuest> signedInGuest() {
  auto guest = HLVSDKGuest::currentGuest();
  if (!guest) throw HttpError(409, "not-signed-in", "Nobody is signed in.");
  return guest;
}

void addApp(ApiRoutes& routes, const AppPtr& app) {
  routes.add("PUT", "app/guest", [app](const Exchange& exchange) {
    const auto body = exchange.body();
    requireKnownMembers(body, {"email"});
    const auto email = textIn(body, "email").value_or("");
    app->run(exchange.sandbox, "sign in", replying(exchange), [email](App& running) {
      running.announce([&] {
        const auto signedIn = running.sandbox().signIn(email);
        if (!signedIn) throw HttpError(422, "address-refused", signedIn.problem());
      });
      return nullptr;
    });
  });
  routes.add("DELETE", "app/guest", [app](const Exchange& exchange) {
    app->run(exchange.sandbox, "sign out", replying(exchange), [](App& running) {
      running.sandbox().signOut();
      return nullptr;
    });
  });
  routes.add("PUT", "app/network", [app](const Exchange& exchange) {
    const auto body = exchange.body();
    requireKnownMembers(body, {"on"});
    const bool isOn = requiredFlagIn(body, "on");
    const auto* name = isOn ? "network on" : "network off";
    app->run(exchange.sandbox, name, replying(exchange), [isOn](App& running) {
      const auto change = [&] { running.sandbox().setReachable(isOn); };
      if (isOn && !running.sandbox().isReachable()) {
        running.announce(change);
      } else {
        change();
      }
      return nullptr;
    });
  });
  routes.add("POST", "app/foreground", [app](const Exchange& exchange) {
    app->run(exchange.sandbox, "foreground", replying(exchange), [](App& running) {
      running.announce([&] { running.sandbox().enterForeground(); });
      return nullptr;
    });
  });
  routes.add("POST", "app/cards", [app](const Exchange& exchange) {
    auto body = exchange.body();
    const auto card = takeCard(body);
    const auto address = body.contains("billing_address")
                             ? addressOf(objectIn(body, "billing_address"))
                             : EnteredAddress::make({});
    app->run(exchange.sandbox, "add", replying(exchange), [card, address](App& running) {
      return running.kit().add(card, address, signedInGuest());
    });
  });
  routes.add("PATCH", "app/cards/*", [app](const Exchange& exchange) {
    const auto address = addressOf(exchange.body());
    const auto start = [id = exchange.part(2), address](App& running) {
      return running.kit().update(id, address, signedInGuest());
    };
    app->run(exchange.sandbox, "update", replying(exchange), start);
  });
  routes.add("DELETE", "app/cards/*", [app](const Exchange& exchange) {
    app->run(exchange.sandbox, "delete", replying(exchange), [id = exchange.part(2)](App& running) {
      const auto guest = signedInGuest();
      const auto cards = running.sandbox().backendCards();
      const auto* card = findCard(cards, id);
      return running.kit().remove(id, card ? card->useCase : "default", guest);
    });
  });
  routes.add("POST", "reset", [app](const Exchange& exchange) {
    app->run(exchange.sandbox, "reset", replying(exchange), [](App& running) {
      running.sandbox().reset();
      return nullptr;
    });
  });
}

}  // namespace

void addConsoleRoutes(ApiRoutes& routes, Registry& registry, const std::shared_ptr<App>& app) {
  addData(routes, registry);
  addApp(routes, app);
  addPageRoutes(routes);
}

}  // namespace hlv::sandbox::server
