#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Calls/Summary.h"
#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/JSON/CardRecords.h"
#include "Sandbox/Masking/MaskedText.h"
#include "Server/Api/Resources.h"

namespace hlv::sandbox::server {
namespace {

using backend::Caller;

const CallHandler& backendService() {
  static const auto& handler = *new CallHandler("backend", backendErrorDomain);
  return handler;
}

void requireNoCardNumber(const Json& json) {
  if (const auto* text = json.get_ptr<const std::string*>(); text && holdsCardNumber(*text)) {
    throw HttpError(422, "card-number-refused", "The backend takes no card numbers.");
  }
  if (!json.is_structured()) return;
  for (const auto& item : json) requireNoCardNumber(item);
}

Json bodyOf(const Exchange& exchange) {
  auto body = exchange.body();
  requireNoCardNumber(body);
  return body;
}

void requireAddress(const Json& address) {
  requireKnownMembers(address, {"street", "city", "country_code", "zip", "business_name"});
  for (const auto& [key, value] : address.items()) {
    if (!value.is_string()) throw HttpError(422, "wrong-type", "An address holds texts only.");
  }
}

void requireAddCardBody(const Json& body) {
  requireKnownMembers(body, {"credit_card", "provider"});
  requiredIntegerIn(body, "provider");
  const auto& card = objectIn(body, "credit_card");
  requireKnownMembers(
      card, {"last_four_digits", "brand", "use_case", "external_identifier", "card_holder",
             "expiry_month", "expiry_year", "billing_address", "plv_token"});
  for (const auto& [key, value] : card.items()) {
    if (key == "billing_address") {
      requireAddress(objectIn(card, "billing_address"));
    } else if (!value.is_string()) {
      throw HttpError(422, "wrong-type", "A card holds texts and an address only.");
    }
  }
}

Caller callerOf(const Exchange& exchange) {
  const auto session = exchange.session();
  return {session ? Caller::Kind::session : Caller::Kind::anyone, exchange.part(2),
          session.value_or("")};
}

struct Changed {
  std::string guest;
  std::optional<BackendCard> card;
};

/// Serves a call that changes a guest. The reply's size grows with the guest's cards, unless the
/// caller prefers it minimal.
void serveChange(const Exchange& exchange, const Call& call, int status,
                 std::function<Changed(Database&, const Caller&)> change) {
  const bool isMinimal = exchange.request.prefer == "return=minimal";
  auto changing = exchange;
  changing.reply = [isMinimal, reply = exchange.reply](HttpReply made) {
    // One that was kept says so, too.
    const bool isApplied = isMinimal && made.status < 300;
    if (isApplied) made.headers.emplace_back("Preference-Applied", "return=minimal");
    reply(std::move(made));
  };
  serveCall(changing, backendService(), call,
            [status, isMinimal, caller = callerOf(exchange), change = std::move(change)](
                Database& database, auto) {
              const auto [guest, card] = change(database, caller);
              Json body = {{"guest", jsonOf(backend::readGuest(database, guest, !isMinimal))}};
              if (card) body["credit_card"] = jsonOf(*card);
              return CallReply{jsonReply(status, body), card ? "card " + card->halvoID : ""};
            });
}

void addGuests(ApiRoutes& routes) {
  constexpr std::string_view path = "v1/guests/*";
  routes.write("PUT", path, [](Database& database, const Exchange& exchange) {
    const auto session = backend::openSession(database, exchange.part(2));
    auto body = jsonOf(backend::readGuest(database, exchange.part(2), true));
    body["session"] = session;
    return jsonReply(200, body);
  });
  routes.write("DELETE", "v1/session", [](Database& database, const Exchange& exchange) {
    backend::endSession(database, exchange.session().value_or(""));
    return jsonReply(204, nullptr);
  });
  routes.read(path, [](Database& database, const Exchange& exchange) {
    const auto owner = backend::ownerOf(database, callerOf(exchange));
    return jsonReply(200, jsonOf(backend::readGuest(database, owner, true)));
  });
  routes.add("PATCH", path, [](const Exchange& exchange) {
    const auto body = bodyOf(exchange);
    requireKnownMembers(body, {"payment_token"});
    serveChange(exchange, {Operation::updateGuest}, 200,
                [token = textIn(body, "payment_token")](Database& database, const Caller& caller) {
                  return Changed{backend::updateGuest(database, caller, token), {}};
                });
  });
}

void addCards(ApiRoutes& routes) {
  constexpr std::string_view cards = "v1/guests/*/cards";
  constexpr std::string_view card = "v1/guests/*/cards/*";
  routes.add("GET", cards, [](const Exchange& exchange) {
    serveCall(exchange, backendService(), {Operation::fetchCards},
              [caller = callerOf(exchange)](Database& database, std::optional<FaultKind> fault) {
                const auto list = backend::fetchCards(database, caller, fault);
                auto reply = jsonReply(200, {{"credit_cards", list ? listOf(*list) : Json()}});
                return CallReply{std::move(reply), counted(list, "card")};
              });
  });
  routes.add("POST", cards, [](const Exchange& exchange) {
    const auto body = bodyOf(exchange);
    requireAddCardBody(body);
    const auto useCase = textIn(objectIn(body, "credit_card"), "use_case");
    serveChange(exchange, {Operation::addCard, useCase}, 201,
                [request = dictionaryOf(body)](Database& database, const Caller& caller) {
                  auto [owner, added] = backend::addCard(database, caller, request);
                  return Changed{std::move(owner), std::move(added)};
                });
  });
  routes.add("PATCH", card, [](const Exchange& exchange) {
    const auto address = bodyOf(exchange);
    requireAddress(address);
    const auto& id = exchange.part(4);
    serveChange(exchange, {Operation::updateCard, {}, id}, 200,
                [id, fields = dictionaryOf(address)](Database& database, const Caller& caller) {
                  auto [owner, updated] = backend::updateCard(database, caller, id, fields);
                  return Changed{std::move(owner), std::move(updated)};
                });
  });
  routes.add("DELETE", card, [](const Exchange& exchange) {
    const auto& id = exchange.part(4);
    serveChange(exchange, {Operation::deleteCard, {}, id}, 200,
                [id](Database& database, const Caller& caller) {
                  return Changed{backend::deleteCard(database, caller, id), {}};
                });
  });
}

}  // namespace

void addBackendRoutes(ApiRoutes& routes) {
  addGuests(routes);
  addCards(routes);
}

}  // namespace hlv::sandbox::server
