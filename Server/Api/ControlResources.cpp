#include <utility>

#include "Sandbox/Backend/Backend.h"
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
#include "Sandbox/Testing/Scenarios.h"
#include "Server/Api/Resources.h"

namespace hlv::sandbox::server {
namespace {

/// A refusal of the provider's or the backend's rules is one of the request here.
template <class Change>
void requirePossible(const std::string& code, Change change) {
  try {
    const Result<> done = change();
    if (!done) throw HttpError(422, code, done.problem());
  } catch (const Refusal& refusal) {
    throw HttpError(422, code, refusal.what());
  }
}

void requireSensible(const Fault& fault) {
  requirePossible("fault-refused", [&] { return checkFault(fault); });
}

Json faultsJson(Database& database) { return {{"faults", listOf(readFaults(database))}}; }

/// The one whose number is in the path.
Fault requireFault(Database& database, const Exchange& exchange) {
  const auto number = numberOf(exchange.part(3));
  auto fault = number ? readFault(database, *number) : std::nullopt;
  if (!fault) {
    throw HttpError(404, "no-such-fault", "There is no armed fault of this number.");
  }
  return *std::move(fault);
}

void addFaults(ApiRoutes& routes) {
  routes.read("v1/sandbox/faults", [](Database& database, const Exchange&) {
    return jsonReply(200, faultsJson(database));
  });
  routes.write("POST", "v1/sandbox/faults", [](Database& database, const Exchange& exchange) {
    auto fault = newFaultIn(exchange.body());
    requireSensible(fault);
    fault.number = insertFault(database, fault);
    auto body = faultsJson(database);
    body["fault"] = jsonOf(fault);
    return jsonReply(200, body);
  });
  routes.write("DELETE", "v1/sandbox/faults", [](Database& database, const Exchange&) {
    removeAllFaults(database);
    return jsonReply(200, faultsJson(database));
  });
  routes.read("v1/sandbox/faults/*", [](Database& database, const Exchange& exchange) {
    return jsonReply(200, jsonOf(requireFault(database, exchange)));
  });
  routes.write("PATCH", "v1/sandbox/faults/*", [](Database& database, const Exchange& exchange) {
    const auto fault = changedFault(requireFault(database, exchange), exchange.body());
    requireSensible(fault);
    replaceFault(database, fault);
    return jsonReply(200, jsonOf(fault));
  });
  routes.write("DELETE", "v1/sandbox/faults/*", [](Database& database, const Exchange& exchange) {
    removeFault(database, requireFault(database, exchange).number);
    return jsonReply(204, nullptr);
  });
  routes.read("v1/sandbox/firings", [](Database& database, const Exchange&) {
    return jsonReply(200, {{"firings", listOf(readFirings(database))}});
  });
}

/// The guest whom a request of a tester is about: the one it names, else the session's, else the
/// sandbox's only one.
std::string guestMeant(Database& database, const std::optional<std::string>& named,
                       const std::optional<std::string>& session) {
  if (named) {
    return backend::ownerOf(database, {backend::Caller::Kind::anyone, *named});
  }
  auto guest = session ? readSessionGuest(database, *session) : readOnlyGuest(database);
  if (!guest) {
    throw HttpError(422, "guest-needed", "The request has to name its guest.");
  }
  return *guest;
}

HttpReply sidesReply(Database& database, int status, const std::string& guest) {
  return jsonReply(status, {{"credit_cards", listOf(readCards(database, guest))},
                            {"instruments", listOf(provider::instrumentsOf(database, guest))}});
}

void addSides(ApiRoutes& routes) {
  routes.read("v1/sandbox/sides", [](Database& database, const Exchange& exchange) {
    const auto guest =
        guestMeant(database, exchange.request.queryValue("guest"), exchange.session());
    return sidesReply(database, 200, guest);
  });
  routes.write("POST", "v1/sandbox/scenarios", [](Database& database, const Exchange& exchange) {
    const auto body = exchange.body();
    requireKnownMembers(body, {"name", "guest"});
    const auto scenario = scenarioNamed(textIn(body, "name").value_or(""));
    if (!scenario) throw HttpError(422, "scenario-refused", scenario.problem());
    const auto guest = guestMeant(database, textIn(body, "guest"), exchange.session());
    requirePossible("scenario-refused", [&] { return makeScenario(database, guest, *scenario); });
    return sidesReply(database, 200, guest);
  });
  routes.add("POST", "v1/sandbox/instruments", [](const Exchange& exchange) {
    auto body = exchange.body();
    auto fields = takeNewCard(body);
    requireKnownMembers(body, {"use_case", "credit_card", "guest"});
    fields.useCase = textIn(body, "use_case").value_or(fields.useCase);
    const auto card = EnteredCard::make(std::move(fields));
    replyWriting(exchange, [card, named = textIn(body, "guest"),
                            session = exchange.session()](Database& database) {
      const auto guest = guestMeant(database, named, session);
      requirePossible("instrument-refused", [&] {
        provider::storeOrphan(database, guest, *card);
        return Result<>();
      });
      return sidesReply(database, 201, guest);
    });
  });
}

Json clockJson(Database& database) { return {{"now", timeText(sandboxTime(database))}}; }

std::chrono::sys_seconds newTime(Database& database, const Json& body) {
  requireKnownMembers(body, {"now", "advance_seconds"});
  if (const auto seconds = integerIn(body, "advance_seconds")) {
    constexpr std::int64_t longest = 10'000LL * 366 * 86'400;
    if (body.contains("now") || *seconds > longest || *seconds < -longest) {
      throw HttpError(422, "wrong-type", "A clock is set, or moved by some seconds.");
    }
    return sandboxTime(database) + std::chrono::seconds(*seconds);
  }
  return clockTimeIn(textIn(body, "now").value_or(""));
}

void addClockAndNetwork(ApiRoutes& routes) {
  routes.read("v1/sandbox/clock", [](Database& database, const Exchange&) {
    return jsonReply(200, clockJson(database));
  });
  routes.write("PUT", "v1/sandbox/clock", [](Database& database, const Exchange& exchange) {
    moveClock(database, newTime(database, exchange.body()));
    return jsonReply(200, clockJson(database));
  });
  routes.read("v1/sandbox/network", [](Database& database, const Exchange&) {
    return jsonReply(200, {{"on", isReachable(readNetworkState(database))}});
  });
  routes.write("PUT", "v1/sandbox/network", [](Database& database, const Exchange& exchange) {
    const auto body = exchange.body();
    requireKnownMembers(body, {"on"});
    const bool isOn = requiredFlagIn(body, "on");
    writeNetworkState(database, isOn ? 1 : 0);
    return jsonReply(200, {{"on", isOn}});
  });
}

Json requestsIn(Database& database, const Exchange& exchange, std::int64_t usualLimit) {
  const auto& request = exchange.request;
  const RequestFilter filter{exchange.number("after", 0, 0, INT64_MAX),
                             exchange.number("limit", usualLimit, 1, 1'000),
                             request.queryValue("method"),
                             request.queryValue("status"),
                             request.queryValue("path"),
                             request.queryValue("fault")};
  return RequestLog::read(database, filter, exchange.sandbox->id());
}

Json harEntryOf(const Json& request, const std::string& host) {
  const auto& duration = request["duration_ms"];
  const auto& id = request["id"];
  return {{"startedDateTime", request["at"]},
          {"time", duration},
          {"request",
           {{"method", request["method"]},
            {"url", "http://" + host + request["path"].get<std::string>()},
            {"httpVersion", "HTTP/1.1"},
            {"cookies", Json::array()},
            {"headers", Json::array()},
            {"queryString", Json::array()},
            {"headersSize", -1},
            {"bodySize", request["request_bytes"]}}},
          {"response",
           {{"status", request["status"]},
            {"statusText", ""},
            {"httpVersion", "HTTP/1.1"},
            {"cookies", Json::array()},
            {"headers", {{{"name", "X-Request-Id"}, {"value", id}}}},
            {"content", {{"size", request["reply_bytes"]}, {"mimeType", "application/json"}}},
            {"redirectURL", ""},
            {"headersSize", -1},
            {"bodySize", request["reply_bytes"]}}},
          {"cache", Json::object()},
          {"timings", {{"send", 0}, {"wait", duration}, {"receive", 0}}},
          {"_id", id},
          {"_fault", request["fault"]}};
}

/// HAR 1.2 of requests as the log has them, without bodies and headers, which nobody keeps.
Json harOf(const Json& requests, const std::string& host) {
  auto entries = Json::array();
  for (const auto& request : requests) entries.push_back(harEntryOf(request, host));
  return {{"log",
           {{"version", "1.2"},
            {"creator", {{"name", "paylevenkit"}, {"version", "1.0.0"}}},
            {"entries", std::move(entries)}}}};
}

/// The requests that come, one event each.
EventStream requestStream(const std::shared_ptr<OpenSandbox>& sandbox) {
  return [sandbox, last = sandbox->store().read(RequestLog::last),
          seen = std::int64_t{0}]() mutable -> std::string {
    if (sandbox->isRemoved()) throw noSuchSandbox();
    const auto changes = sandbox->store().changes();
    if (changes == seen) return "";
    const auto news = sandbox->store().read([&](Database& database) {
      return RequestLog::read(database, {.after = last}, sandbox->id());
    });
    std::string events;
    for (const auto& request : news["requests"]) {
      last = request["number"];
      events += "event: request\ndata: " + textOf(request) + "\n\n";
    }
    // What is left comes the next time, whether or not anything changes.
    if (news["next"].is_null()) seen = changes;
    return events;
  };
}

/// Reads of the log are writes, before which what is new in it is written.
void addRequests(ApiRoutes& routes) {
  routes.write("GET", "v1/sandbox/requests", [](Database& database, const Exchange& exchange) {
    return jsonReply(200, requestsIn(database, exchange, 100));
  });
  routes.add("GET", "v1/sandbox/requests/stream", [](const Exchange& exchange) {
    exchange.reply({.events = requestStream(exchange.sandbox)});
  });
  routes.write("GET", "v1/sandbox/requests/*", [](Database& database, const Exchange& exchange) {
    const auto request = RequestLog::find(database, exchange.part(3), exchange.sandbox->id());
    if (!request) throw HttpError(404, "no-such-request", "The log has no request of this id.");
    return jsonReply(200, *request);
  });
  routes.write("GET", "v1/sandbox/har", [](Database& database, const Exchange& exchange) {
    const auto log = requestsIn(database, exchange, 1'000);
    return jsonReply(200, harOf(log["requests"], exchange.request.host));
  });
}

void addWholeSandbox(ApiRoutes& routes, Registry& registry) {
  routes.perform("GET", "v1/sandbox", registry, [&registry](const Exchange& exchange) {
    return describing(registry, exchange.sandbox->id())();
  });
  routes.add("POST", "v1/sandbox/reset", [&registry](const Exchange& exchange) {
    exchange.sandbox->write(forgetEverything,
                            replyWhenDone(exchange, describing(registry, exchange.sandbox->id())));
  });
  routes.perform("POST", "v1/sandbox/snapshots", registry, [&registry](const Exchange& exchange) {
    return jsonReply(201, jsonOf(registry.snapshot(exchange.sandbox->id())));
  });
  routes.add("POST", "v1/sandbox/restore", [&registry](const Exchange& exchange) {
    const auto body = exchange.body();
    requireKnownMembers(body, {"snapshot"});
    const auto& id = exchange.sandbox->id();
    registry.restore(id, textIn(body, "snapshot").value_or(""),
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

}  // namespace hlv::sandbox::server
