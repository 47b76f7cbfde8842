#include "Server/Console/ConsoleResources.h"

#include <set>
#include <sstream>
#include <utility>

#include "Sandbox/Calls/Journal.h"
#include "Sandbox/Cards/TestCards.h"
#include "Sandbox/JSON/InstrumentRecords.h"
#include "Sandbox/JSON/JournalRecords.h"
#include "Server/Console/ConsoleRecords.h"
#include "Server/Console/LiveFeed.h"
#include "Server/Console/Page.h"
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
    HttpReply reply;
    reply.events = [feed = std::make_shared<LiveFeed>(registry, followedBy(exchange))] {
      return feed->next();
    };
    exchange.reply(std::move(reply));
  });
  routes.add("GET", "timeline", [](const Exchange& exchange) {
    const sandbox::Journal journal(exchange.world->sharedStore(), "start");
    exchange.reply(
        jsonReply(200, {{"operations", sandbox::listOf(journal.last(countIn(exchange.request)))}}));
  });
  routes.add("GET", "stored", [](const Exchange& exchange) {
    replyReading(exchange, [](Database& database) { return jsonReply(200, storedData(database)); });
  });
  routes.add("GET", "choices",
             [](const Exchange& exchange) { exchange.reply(jsonReply(200, choices())); });
}

void addApp(ApiRoutes& routes, const AppPtr& app) {
  routes.add("PUT", "app/guest", [app](const Exchange& exchange) {
    const auto body = exchange.body();
    sandbox::requireKnownMembers(body, {"email"});
    app->signIn(exchange.world, sandbox::textIn(body, "email").value_or(""), replying(exchange));
  });
  routes.add("DELETE", "app/guest",
             [app](const Exchange& exchange) { app->signOut(exchange.world, replying(exchange)); });
  routes.add("PUT", "app/network", [app](const Exchange& exchange) {
    const auto body = exchange.body();
    sandbox::requireKnownMembers(body, {"on"});
    app->setReachable(exchange.world, sandbox::requiredFlagIn(body, "on"), replying(exchange));
  });
  routes.add("POST", "app/foreground", [app](const Exchange& exchange) {
    app->enterForeground(exchange.world, replying(exchange));
  });
  routes.add("POST", "app/cards", [app](const Exchange& exchange) {
    auto body = exchange.body();
    const auto entered = takeCard(body);
    const auto address = body.contains("billing_address")
                             ? addressOf(sandbox::objectIn(body, "billing_address"))
                             : sandbox::EnteredAddress::make({});
    app->add(exchange.world, entered, address, replying(exchange));
  });
  routes.add("PATCH", "app/cards/*", [app](const Exchange& exchange) {
    app->update(exchange.world, exchange.part(2), addressOf(exchange.body()), replying(exchange));
  });
  routes.add("DELETE", "app/cards/*", [app](const Exchange& exchange) {
    app->remove(exchange.world, exchange.part(2), replying(exchange));
  });
  routes.add("POST", "reset",
             [app](const Exchange& exchange) { app->reset(exchange.world, replying(exchange)); });
}

void serveFile(const Exchange& exchange) {
  const auto& request = exchange.request;
  const auto name = request.path.size() > exchange.skipped ? exchange.part(0) : "";
  HttpReply reply;
  if (name.empty() && !request.target.ends_with('/')) {
    // The page finds the rest beside itself.
    reply.status = 308;
    reply.headers.emplace_back("Location", "/" + request.path[0] + "/" + request.path[1] + "/");
    return exchange.reply(std::move(reply));
  }
  const auto* file = findPageFile(name);
  if (!file) throw HttpError(404, "no-such-resource", "There is nothing at this path.");
  reply.body = file->content;
  reply.contentType = file->type;
  exchange.reply(std::move(reply));
}

}  // namespace

void addConsoleRoutes(ApiRoutes& routes, Registry& registry, const std::shared_ptr<App>& app) {
  addJournal(routes, registry);
  addApp(routes, app);
  routes.add("GET", "", serveFile);
  routes.add("GET", "*", serveFile);
}

}  // namespace hlv::server
