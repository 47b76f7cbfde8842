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

/// A reply about a guest who was changed. Its size grows with the guest's cards, unless the caller
/// prefers it minimal.
struct GuestReply {
  explicit GuestReply(const Exchange& exchange)
      : isMinimal(exchange.request.prefer == "return=minimal") {}

  CallReply made(Database& database, int status, const std::string& owner,
                 const BackendCard* card = nullptr) const {
    Json body = {{"guest", jsonOf(backend::readGuest(database, owner, !isMinimal))}};
    if (card) body["credit_card"] = jsonOf(*card);
    auto reply = jsonReply(status, body);
    if (isMinimal) reply.headers.emplace_back("Preference-Applied", "return=minimal");
    return {std::move(reply), card ? "card " + card->halvoID : ""};
  }

  bool isMinimal;
};

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
    serveCall(exchange, backendService(), {Operation::updateGuest},
              [token = textIn(body, "payment_token"), caller = callerOf(exchange),
               wanted = GuestReply(exchange)](Database& database, auto) {
                return wanted.made(database, 200, backend::updateGuest(database, caller, token));
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
    serveCall(exchange, backendService(), {Operation::addCard, useCase},
              [request = dictionaryOf(body), caller = callerOf(exchange),
               wanted = GuestReply(exchange)](Database& database, auto) {
                const auto added = backend::addCard(database, caller, request);
                return wanted.made(database, 201, added.owner, &added.card);
              });
  });
  routes.add("PATCH", card, [](const Exchange& exchange) {
    const auto address = bodyOf(exchange);
    requireAddress(address);
    const auto& id = exchange.part(4);
    serveCall(exchange, backendService(), {Operation::updateCard, {}, id},
              [id, fields = dictionaryOf(address), caller = callerOf(exchange),
               wanted = GuestReply(exchange)](Database& database, auto) {
                const auto updated = backend::updateCard(database, caller, id, fields);
                return wanted.made(database, 200, updated.owner, &updated.card);
              });
  });
  routes.add("DELETE", card, [](const Exchange& exchange) {
    const auto& id = exchange.part(4);
    serveCall(
        exchange, backendService(), {Operation::deleteCard, {}, id},
        [id, caller = callerOf(exchange), wanted = GuestReply(exchange)](Database& database, auto) {
          return wanted.made(database, 200, backend::deleteCard(database, caller, id));
        });
  });
}

}  // namespace

void addBackendRoutes(ApiRoutes& routes) {
  addGuests(routes);
  addCards(routes);
}

}  // namespace hlv::sandbox::server
