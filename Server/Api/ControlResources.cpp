#include <utility>

#include "Sandbox/Backend/BackendTables.h"
#include "Sandbox/Calls/Reachability.h"
#include "Sandbox/Cards/EnteredCard.h"
#include "Sandbox/Faults/FaultTables.h"
#include "Sandbox/JSON/CardRecords.h"
#include "Sandbox/JSON/FaultRecords.h"
#include "Sandbox/JSON/InstrumentRecords.h"
#include "Sandbox/JSON/SandboxRecords.h"
#include "Sandbox/Provider/Provider.h"
#include "Sandbox/Records/Times.h"
#include "Sandbox/Store/Clock.h"
#include "Sandbox/Testing/Reset.h"
#include "Sandbox/Testing/Scenarios.h"
#include "Server/Api/Callers.h"
#include "Server/Api/ErrorReplies.h"
#include "Server/Api/Har.h"
#include "Server/Api/Resources.h"
#include "Server/Api/SandboxClock.h"

namespace hlv::server {
namespace {

using sandbox::Database;
using sandbox::Fault;
using sandbox::Json;

/// A refusal of the provider's or the backend's rules is one of the request here.
template <class Change>
void requirePossible(const std::string& code, Change change) {
  try {
    const Result<> done = change();
    if (!done) throw HttpError(422, code, done.problem());
  } catch (const sandbox::Refusal& refusal) {
    throw HttpError(422, code, refusal.what());
  }
}

void requireSensible(const Fault& fault) {
  requirePossible("fault-refused", [&] { return sandbox::checkFault(fault); });
}

Json faultsJson(Database& database) {
  return {{"faults", sandbox::listOf(sandbox::readFaults(database))}};
}

HttpError noSuchFault() {
  return HttpError(404, "no-such-fault", "There is no armed fault of this number.");
}

std::int64_t numberIn(const Exchange& exchange) {
  const auto number = sandbox::numberOf(exchange.part(3));
  if (!number) throw noSuchFault();
  return *number;
}

Fault requireFault(Database& database, std::int64_t number) {
  auto fault = sandbox::readFault(database, number);
  if (!fault) throw noSuchFault();
  return *std::move(fault);
}

Fault newFaultOf(const Exchange& exchange) {
  auto fault = sandbox::newFaultIn(exchange.body());
  requireSensible(fault);
  return fault;
}

sandbox::Scenario scenarioIn(const Json& body) {
  const auto scenario = sandbox::scenarioNamed(sandbox::textIn(body, "name").value_or(""));
  if (!scenario) throw HttpError(422, "scenario-refused", scenario.problem());
  return *scenario;
}

void bringApart(Database& database, const std::string& guest, sandbox::Scenario scenario) {
  requirePossible("scenario-refused",
                  [&] { return sandbox::makeScenario(database, guest, scenario); });
}

void addFaults(ApiRoutes& routes) {
  routes.add("GET", "v1/sandbox/faults", [](const Exchange& exchange) {
    replyReading(exchange, [](Database& database) { return jsonReply(200, faultsJson(database)); });
  });
  routes.add("POST", "v1/sandbox/faults", [](const Exchange& exchange) {
    replyWriting(exchange, [fault = newFaultOf(exchange)](Database& database) mutable {
      fault.number = sandbox::insertFault(database, fault);
      auto body = faultsJson(database);
      body["fault"] = sandbox::jsonOf(fault);
      return jsonReply(200, body);
    });
  });
  routes.add("DELETE", "v1/sandbox/faults", [](const Exchange& exchange) {
    replyWriting(exchange, [](Database& database) {
      sandbox::removeAllFaults(database);
      return jsonReply(200, faultsJson(database));
    });
  });
  routes.add("GET", "v1/sandbox/faults/*", [](const Exchange& exchange) {
    replyReading(exchange, [number = numberIn(exchange)](Database& database) {
      return jsonReply(200, sandbox::jsonOf(requireFault(database, number)));
    });
  });
  routes.add("PATCH", "v1/sandbox/faults/*", [](const Exchange& exchange) {
    replyWriting(
        exchange, [number = numberIn(exchange), changes = exchange.body()](Database& database) {
          const auto fault = sandbox::changedFault(requireFault(database, number), changes);
          requireSensible(fault);
          sandbox::replaceFault(database, fault);
          return jsonReply(200, sandbox::jsonOf(fault));
        });
  });
  routes.add("DELETE", "v1/sandbox/faults/*", [](const Exchange& exchange) {
    replyWriting(exchange, [number = numberIn(exchange)](Database& database) {
      if (!sandbox::removeFault(database, number)) throw noSuchFault();
      return jsonReply(204, nullptr);
    });
  });
  routes.add("GET", "v1/sandbox/firings", [](const Exchange& exchange) {
    replyReading(exchange, [](Database& database) {
      return jsonReply(200, {{"firings", sandbox::listOf(sandbox::readFirings(database))}});
    });
  });
}

HttpReply sidesReply(Database& database, int status, const std::string& guest) {
  return jsonReply(status, {{"credit_cards", sandbox::listOf(sandbox::readCards(database, guest))},
                            {"instruments",
                             sandbox::listOf(sandbox::provider::instrumentsOf(database, guest))}});
}

void addSides(ApiRoutes& routes) {
  routes.add("GET", "v1/sandbox/sides", [](const Exchange& exchange) {
    replyReading(exchange, [named = exchange.request.queryValue("guest"),
                            session = sessionOf(exchange)](Database& database) {
      return sidesReply(database, 200, guestMeant(database, named, session));
    });
  });
  routes.add("POST", "v1/sandbox/scenarios", [](const Exchange& exchange) {
    const auto body = exchange.body();
    sandbox::requireKnownMembers(body, {"name", "guest"});
    replyWriting(exchange, [scenario = scenarioIn(body), named = sandbox::textIn(body, "guest"),
                            session = sessionOf(exchange)](Database& database) {
      const auto guest = guestMeant(database, named, session);
      bringApart(database, guest, scenario);
      return sidesReply(database, 200, guest);
    });
  });
  routes.add("POST", "v1/sandbox/instruments", [](const Exchange& exchange) {
    auto body = exchange.body();
    auto fields = sandbox::takeNewCard(body);
    sandbox::requireKnownMembers(body, {"use_case", "credit_card", "guest"});
    fields.useCase = sandbox::textIn(body, "use_case").value_or(fields.useCase);
    const auto card = sandbox::EnteredCard::make(std::move(fields));
    replyWriting(exchange, [card, named = sandbox::textIn(body, "guest"),
                            session = sessionOf(exchange)](Database& database) {
      const auto guest = guestMeant(database, named, session);
      requirePossible("instrument-refused", [&] {
        sandbox::provider::storeOrphan(database, guest, *card);
        return Result<>();
      });
      return sidesReply(database, 201, guest);
    });
  });
}

Json clockJson(Database& database) {
  return {{"now", sandbox::timeText(sandbox::sandboxTime(database))}};
}

std::chrono::sys_seconds newTime(Database& database, const Json& body) {
  sandbox::requireKnownMembers(body, {"now", "advance_seconds"});
  if (const auto seconds = sandbox::integerIn(body, "advance_seconds")) {
    constexpr std::int64_t longest = 10'000LL * 366 * 86'400;
    if (body.contains("now") || *seconds > longest || *seconds < -longest) {
      throw HttpError(422, "wrong-type", "A clock is set, or moved by some seconds.");
    }
    return sandbox::sandboxTime(database) + std::chrono::seconds(*seconds);
  }
  return clockTimeIn(sandbox::textIn(body, "now").value_or(""));
}

void addClockAndNetwork(ApiRoutes& routes) {
  routes.add("GET", "v1/sandbox/clock", [](const Exchange& exchange) {
    replyReading(exchange, [](Database& database) { return jsonReply(200, clockJson(database)); });
  });
  routes.add("PUT", "v1/sandbox/clock", [](const Exchange& exchange) {
    replyWriting(exchange, [body = exchange.body()](Database& database) {
      moveClock(database, newTime(database, body));
      return jsonReply(200, clockJson(database));
    });
  });
  routes.add("GET", "v1/sandbox/network", [](const Exchange& exchange) {
    replyReading(exchange, [](Database& database) {
      return jsonReply(200, {{"on", isReachable(sandbox::readNetworkState(database))}});
    });
  });
  routes.add("PUT", "v1/sandbox/network", [](const Exchange& exchange) {
    const auto body = exchange.body();
    sandbox::requireKnownMembers(body, {"on"});
    replyWriting(exchange, [on = sandbox::requiredFlagIn(body, "on")](Database& database) {
      sandbox::writeNetworkState(database, on ? 1 : 0);
      return jsonReply(200, {{"on", on}});
    });
  });
}

RequestFilter filterIn(const HttpRequest& request, std::int64_t usualLimit = 100) {
  return {numberIn(request, "after", 0, 0, INT64_MAX),
          numberIn(request, "limit", usualLimit, 0, 1'000),
          request.queryValue("method"),
          request.queryValue("status"),
          request.queryValue("path"),
          request.queryValue("fault")};
}

/// Replies from the log with what is new in it written first.
void replyFromLog(const Exchange& exchange, Work work) {
  replyWriting(exchange, [world = exchange.world, work = std::move(work)](Database& database) {
    world->log().write(database);
    return work(database);
  });
}

/// The requests that come, one event each.
class RequestStream {
 public:
  explicit RequestStream(std::shared_ptr<World> world)
      : world_(std::move(world)), last_(world_->store().read(RequestLog::last)) {}

  std::string next() {
    const auto changes = world_->store().changes();
    if (changes == changes_) return "";
    const auto news = world_->store().read([this](Database& database) {
      return RequestLog::read(database, {.after = last_}, world_->id());
    });
    std::string events;
    for (const auto& request : news["requests"]) {
      last_ = request["number"];
      events += "event: request\ndata: " + sandbox::textOf(request) + "\n\n";
    }
    // What is left comes the next time, whether or not anything changes.
    if (news["next"].is_null()) changes_ = changes;
    return events;
  }

 private:
  const std::shared_ptr<World> world_;
  std::int64_t changes_ = 0;
  std::int64_t last_;
};

void addRequests(ApiRoutes& routes) {
  routes.add("GET", "v1/sandbox/requests", [](const Exchange& exchange) {
    replyFromLog(exchange, [filter = filterIn(exchange.request),
                            id = exchange.world->id()](Database& database) {
      return jsonReply(200, RequestLog::read(database, filter, id));
    });
  });
  routes.add("GET", "v1/sandbox/requests/stream", [](const Exchange& exchange) {
    HttpReply reply;
    reply.events = [stream = std::make_shared<RequestStream>(exchange.world)] {
      return stream->next();
    };
    exchange.reply(std::move(reply));
  });
  routes.add("GET", "v1/sandbox/requests/*", [](const Exchange& exchange) {
    replyFromLog(exchange,
                 [wanted = exchange.part(3), id = exchange.world->id()](Database& database) {
                   const auto request = RequestLog::find(database, wanted, id);
                   if (!request) {
                     throw HttpError(404, "no-such-request", "The log has no request of this id.");
                   }
                   return jsonReply(200, *request);
                 });
  });
  routes.add("GET", "v1/sandbox/har", [](const Exchange& exchange) {
    replyFromLog(
        exchange, [filter = filterIn(exchange.request, 1'000), host = exchange.request.host,
                   id = exchange.world->id()](Database& database) {
          return jsonReply(200, harOf(RequestLog::read(database, filter, id)["requests"], host));
        });
  });
}

void addWholeSandbox(ApiRoutes& routes, Registry& registry) {
  routes.add("GET", "v1/sandbox", [&registry](const Exchange& exchange) {
    replyPerforming(exchange, registry, describing(registry, exchange.world->id()));
  });
  routes.add("POST", "v1/sandbox/reset", [&registry](const Exchange& exchange) {
    exchange.world->write(sandbox::forgetEverything,
                          replyWhenDone(exchange, describing(registry, exchange.world->id())));
  });
  routes.add("POST", "v1/sandbox/snapshots", [&registry](const Exchange& exchange) {
    replyPerforming(exchange, registry, [&registry, id = exchange.world->id()] {
      return jsonReply(201, sandbox::jsonOf(registry.snapshot(id)));
    });
  });
  routes.add("POST", "v1/sandbox/restore", [&registry](const Exchange& exchange) {
    const auto body = exchange.body();
    sandbox::requireKnownMembers(body, {"snapshot"});
    const auto& id = exchange.world->id();
    registry.restore(id, sandbox::textIn(body, "snapshot").value_or(""),
                     replyWhenDone(exchange, describing(registry, id)));
  });
}

}  // namespace

void addControlRoutes(ApiRoutes& routes, Registry& registry) {
  addWholeSandbox(routes, registry);
  addFaults(routes);
  addSides(routes);
  addClockAndNetwork(routes);
  addRequests(routes);
}

}  // namespace hlv::server
