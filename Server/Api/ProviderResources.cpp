#include <string_view>
#include <utility>

#include "Sandbox/Calls/Summary.h"
#include "Sandbox/Cards/EnteredCard.h"
#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/JSON/InstrumentRecords.h"
#include "Sandbox/Masking/MaskedText.h"
#include "Sandbox/Provider/Provider.h"
#include "Server/Api/Resources.h"

namespace hlv::sandbox::server {
namespace {

const CallHandler& providerService() {
  static const auto& handler = *new CallHandler("provider", providerErrorDomain);
  return handler;
}

std::shared_ptr<EnteredCard> takeCard(Json& body) { return EnteredCard::make(takeNewCard(body)); }

/// The number that names an instrument without an identifier.
std::int64_t numberIn(const HttpRequest& request) {
  const auto number = numberOf(request.queryValue("number").value_or(""));
  if (!number) throw HttpError(422, "wrong-type", "The instrument's number is none.");
  return *number;
}

void addUsers(ApiRoutes& routes) {
  routes.add("POST", "v1/users", [](const Exchange& exchange) {
    auto body = exchange.body();
    const auto card = takeCard(body);
    requireKnownMembers(body, {"email", "use_case", "credit_card"});
    const auto email = textIn(body, "email");
    if (email && holdsCardNumber(*email)) {
      throw HttpError(422, "card-number-refused", "An address holds no card number.");
    }
    const auto useCase = textIn(body, "use_case");
    serveCall(exchange, providerService(), {Operation::createUserToken, useCase},
              [email, card, useCase](Database& database, std::optional<FaultKind> fault) {
                const auto token =
                    provider::createUserToken(database, email, card.get(), useCase, fault);
                return CallReply{jsonReply(201, {{"token", orNull(token)}}), summary(token)};
              });
  });
}

void addInstruments(ApiRoutes& routes) {
  constexpr std::string_view instruments = "v1/users/*/instruments";
  routes.add("GET", instruments, [](const Exchange& exchange) {
    const auto useCase = exchange.request.queryValue("use_case");
    serveCall(
        exchange, providerService(), {Operation::listInstruments, useCase},
        [token = exchange.part(2), useCase](Database& database, std::optional<FaultKind> fault) {
          const auto list = provider::listInstruments(database, token, useCase, fault);
          auto reply = jsonReply(200, {{"instruments", list ? listOf(*list) : Json()}});
          return CallReply{std::move(reply), counted(list, "instrument")};
        });
  });
  routes.add("POST", instruments, [](const Exchange& exchange) {
    auto body = exchange.body();
    const auto card = takeCard(body);
    requireKnownMembers(body, {"credit_card"});
    const auto useCase = exchange.request.queryValue("use_case");
    serveCall(exchange, providerService(), {Operation::addInstrument, useCase},
              [token = exchange.part(2), card, useCase](Database& database,
                                                        std::optional<FaultKind> fault) {
                provider::addInstrument(database, card.get(), token, useCase, fault);
                return CallReply{jsonReply(201, Json::object()), ""};
              });
  });
  const auto remove = [](const Exchange& exchange) {
    const bool hasIdentifier = exchange.request.path.size() > exchange.skipped + 4;
    provider::NamedInstrument named;
    if (hasIdentifier) {
      named.identifier = exchange.part(4);
    } else {
      named.number = numberIn(exchange.request);
    }
    const auto useCase = exchange.request.queryValue("use_case");
    serveCall(exchange, providerService(),
              {Operation::removeInstrument, useCase, named.identifier.value_or("")},
              [named, useCase, token = exchange.part(2)](Database& database, auto) {
                provider::removeInstrument(database, named, useCase, token);
                return CallReply{jsonReply(204, nullptr), ""};
              });
  };
  routes.add("DELETE", instruments, remove);
  routes.add("DELETE", "v1/users/*/instruments/*", remove);
}

}  // namespace

void addProviderRoutes(ApiRoutes& routes) {
  addUsers(routes);
  addInstruments(routes);
}

}  // namespace hlv::sandbox::server
