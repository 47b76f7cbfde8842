#include <set>
#include <sstream>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Sandbox/Calls/Journal.h"
#include "Sandbox/Cards/TestCards.h"
#include "Sandbox/JSON/InstrumentRecords.h"
#include "Sandbox/JSON/JournalRecords.h"
#include "Server/Console/Console.h"
#include "Values/Wiped.h"

namespace hlv::server {
namespace {

using sandbox::Database;
using AppPtr = std::shared_ptr<App>;

App::Done replying(const Exchange& exchange) {
  return [reply = exchange.reply, trace = exchange.trace,
          id = exchange.request.id](const App::Outcome& outcome) {
    trace->add("client", "app", "operation " + std::to_string(outcome.operation));
    reply(replyOf(outcome, id));
  };
}

/// A test card by its name, or a card as somebody typed it.
std::shared_ptr<sandbox::EnteredCard> takeCard(Json& body) {
  sandbox::CardFields fields;
  const Wiped number(fields.pan);
  const Wiped code(fields.cvv);
  if (const auto name = sandbox::textIn(body, "test_card")) {
    const auto* card = sandbox::findTestCard(*name);
    if (!card) throw HttpError(422, "no-such-test-card", "There is no test card of that name.");
    fields = card->fields;
  } else {
    fields = sandbox::takeNewCard(body);
  }
  sandbox::requireKnownMembers(body, {"test_card", "credit_card", "use_case", "billing_address"});
  fields.useCase = sandbox::textIn(body, "use_case").value_or(fields.useCase);
  return sandbox::EnteredCard::make(std::move(fields));
}

std::shared_ptr<sandbox::EnteredAddress> addressOf(const Json& json) {
  return sandbox::EnteredAddress::make(addressIn(json));
}

/// How many operations are asked for; one, unless the request says otherwise.
std::size_t countIn(const HttpRequest& request) {
  const auto count = sandbox::numberOf(request.queryValue("last").value_or("1"));
  if (!count || *count < 0) {
    throw HttpError(422, "wrong-type", "How many operations are asked for is no number.");
  }
  return static_cast<std::size_t>(*count);
}

/// The sandboxes that a page names, with commas between; without any, the one whose path it asked.
std::set<std::string> followedBy(const Exchange& exchange) {
  std::istringstream named(exchange.request.queryValue("sandbox").value_or(exchange.world->id()));
  std::set<std::string> sandboxes;
  for (std::string id; std::getline(named, id, ',');) sandboxes.insert(id);
  return sandboxes;
}

void addJournal(ApiRoutes& routes, Registry& registry) {
  routes.add("GET", "events", [&registry](const Exchange& exchange) {
    exchange.reply({.events = liveFeed(registry, followedBy(exchange))});
  });
  routes.add("GET", "timeline", [](const Exchange& exchange) {
    const sandbox::Journal journal(exchange.world->sharedStore(), "start");
    exchange.reply(
        jsonReply(200, {{"operations", sandbox::listOf(journal.last(countIn(exchange.request)))}}));
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
    sandbox::requireKnownMembers(body, {"email"});
    const auto email = sandbox::textIn(body, "email").value_or("");
    app->run(exchange.world, "sign in", replying(exchange), [email](App& running) {
      running.announce([&] {
        const auto signedIn = running.sandbox().signIn(email);
        if (!signedIn) throw HttpError(422, "address-refused", signedIn.problem());
      });
      return nullptr;
    });
  });
  routes.add("DELETE", "app/guest", [app](const Exchange& exchange) {
    app->run(exchange.world, "sign out", replying(exchange), [](App& running) {
      running.sandbox().signOut();
      return nullptr;
    });
  });
  routes.add("PUT", "app/network", [app](const Exchange& exchange) {
    const auto body = exchange.body();
    sandbox::requireKnownMembers(body, {"on"});
    const bool isOn = sandbox::requiredFlagIn(body, "on");
    const auto* name = isOn ? "network on" : "network off";
    app->run(exchange.world, name, replying(exchange), [isOn](App& running) {
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
    app->run(exchange.world, "foreground", replying(exchange), [](App& running) {
      running.announce([&] { running.sandbox().enterForeground(); });
      return nullptr;
    });
  });
  routes.add("POST", "app/cards", [app](const Exchange& exchange) {
    auto body = exchange.body();
    const auto card = takeCard(body);
    const auto address = body.contains("billing_address")
                             ? addressOf(sandbox::objectIn(body, "billing_address"))
                             : sandbox::EnteredAddress::make({});
    app->run(exchange.world, "add", replying(exchange), [card, address](App& running) {
      return running.kit().add(card, address, signedInGuest());
    });
  });
  routes.add("PATCH", "app/cards/*", [app](const Exchange& exchange) {
    const auto address = addressOf(exchange.body());
    const auto start = [id = exchange.part(2), address](App& running) {
      return running.kit().update(id, address, signedInGuest());
    };
    app->run(exchange.world, "update", replying(exchange), start);
  });
  routes.add("DELETE", "app/cards/*", [app](const Exchange& exchange) {
    app->run(exchange.world, "delete", replying(exchange), [id = exchange.part(2)](App& running) {
      const auto guest = signedInGuest();
      const auto cards = running.sandbox().backendCards();
      const auto* card = sandbox::findCard(cards, id);
      return running.kit().remove(id, card ? card->useCase : "default", guest);
    });
  });
  routes.add("POST", "reset", [app](const Exchange& exchange) {
    app->run(exchange.world, "reset", replying(exchange), [](App& running) {
      running.sandbox().reset();
      return nullptr;
    });
  });
}

void serveFile(const Exchange& exchange) {
  const auto& request = exchange.request;
  const auto name = request.path.size() > exchange.skipped ? exchange.part(0) : "";
  if (name.empty() && !request.target.ends_with('/')) {
    // The page finds the rest beside itself.
    const auto location = "/" + request.path[0] + "/" + request.path[1] + "/";
    return exchange.reply({.status = 308, .headers = {{"Location", location}}});
  }
  const auto* file = findPageFile(name);
  if (!file) throw HttpError(404, "no-such-resource", "There is nothing at this path.");
  exchange.reply({.body = std::string(file->content), .contentType = std::string(file->type)});
}

}  // namespace

void addConsoleRoutes(ApiRoutes& routes, Registry& registry, const std::shared_ptr<App>& app) {
  addJournal(routes, registry);
  addApp(routes, app);
  routes.add("GET", "", serveFile);
  routes.add("GET", "*", serveFile);
}

}  // namespace hlv::server
