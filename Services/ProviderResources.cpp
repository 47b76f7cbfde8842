#include "Services/ProviderResources.h"

#include <utility>

#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Sandbox/ErrorCodes.h"
#include "Sandbox/Logging/MaskedText.h"
#include "Sandbox/Provider/CardInstruments.h"
#include "Sandbox/SandboxError.h"
#include "Services/Http/ErrorBody.h"
#include "Services/OpenAPI.h"
#include "Services/ProviderRecords.h"
#include "Services/TesterResources.h"
#include "Services/Wiped.h"

namespace hlv::services {
namespace {

std::shared_ptr<PLVCreditCardPaymentInstrument> takeInstrument(Host& host, Json& request) {
  auto card = takeNewCard(request);
  const Wiped number(card.pan);
  const Wiped code(card.cvv);
  return host.makeCreditCardPaymentInstrument(card.pan, card.expiryMonth, card.expiryYear, card.cvv,
                                              card.cardHolder);
}

/// The number that names an instrument without an identifier.
std::int64_t rowIn(const HttpRequest& request) {
  const auto row = numberOf(request.queryValue("number").value_or(""));
  if (!row) throw Refused{422, "wrong-type", "The instrument's number is none."};
  return *row;
}

ErrorPtr notRegistered() {
  return sandbox::SandboxError::make(sandbox::providerErrorDomain,
                                     sandbox::ProviderErrorCode::notRegistered,
                                     "The app is not registered with the provider.");
}

}  // namespace

ProviderResources::ProviderResources(std::shared_ptr<sandbox::Sandbox> sandbox)
    : sandbox_(std::move(sandbox)), idempotency_("provider", sandbox_) {
  routes_.add("GET", {"openapi.json"}, [](const HttpRequest&, const Reply& reply) {
    reply({200, Json::parse(providerOpenAPI())});
  });
  addUsers();
  addInstruments();
  addTesterRoutes(routes_, sandbox_);
}

void ProviderResources::serve(const HttpRequest& request, const Reply& reply) {
  const bool isDocument = request.path == std::vector<std::string>{"openapi.json"};
  if (!isDocument) {
    if (length(request.apiKey) == 0) return reply(errorAnswer(notRegistered()));
    // The sandbox takes any key and keeps none, so that of the first request stands for all.
    std::call_once(registered_, [&] {
      sandbox_->hostBehindDoors()->inAppClient()->registerWithAPIKey("a key of the services");
    });
  }
  routes_.serve(request, reply);
}

void ProviderResources::addUsers() {
  const auto createUser = [](const std::shared_ptr<Host>& host, const HttpRequest& request,
                             const Reply& reply) {
    auto body = parsedObject(request.body);
    const auto instrument = takeInstrument(*host, body);
    requireKnownMembers(body, {"email", "use_case", "credit_card"});
    const auto email = textIn(body, "email");
    if (email && sandbox::maskedText(*email) != *email) {
      throw Refused{422, "card-number-refused", "An address holds no card number."};
    }
    host->inAppClient()->createUserToken(
        email, instrument, textIn(body, "use_case"),
        [reply](const NullableString& token, const ErrorPtr& error) {
          reply(error ? errorAnswer(error) : HttpAnswer{201, {{"token", orNull(token)}}});
        });
  };
  routes_.add("POST", {"v1", "users"}, idempotency_.around(createUser));
}

void ProviderResources::addInstruments() {
  const std::vector<std::string> instruments{"v1", "users", "*", "instruments"};
  routes_.add("GET", instruments, [this](const HttpRequest& request, const Reply& reply) {
    sandbox_->hostBehindDoors()->inAppClient()->getPaymentInstrumentsList(
        request.path[2], request.queryValue("use_case"),
        [reply](const NullableList<PLVCreditCardPaymentInstrument>& list, const ErrorPtr& error) {
          reply(error ? errorAnswer(error) : HttpAnswer{200, {{"instruments", jsonOf(list)}}});
        });
  });
  const auto addInstrument = [](const std::shared_ptr<Host>& host, const HttpRequest& request,
                                const Reply& reply) {
    auto body = parsedObject(request.body);
    const auto instrument = takeInstrument(*host, body);
    requireKnownMembers(body, {"credit_card"});
    host->inAppClient()->addPaymentInstrument(
        instrument, request.path[2], request.queryValue("use_case"),
        [reply](const ErrorPtr& error) {
          reply(error ? errorAnswer(error) : HttpAnswer{201, Json::object()});
        });
  };
  routes_.add("POST", instruments, idempotency_.around(addInstrument));
  const auto remove = [this](const HttpRequest& request, const Reply& reply) {
    sandbox::ProviderInstrument named;
    // No row has the number 0, so an identifier alone decides.
    const bool hasIdentifier = request.path.size() > 4;
    if (hasIdentifier) named.identifier = request.path[4];
    const auto row = hasIdentifier ? 0 : rowIn(request);
    sandbox_->hostBehindDoors()->inAppClient()->removePaymentInstrument(
        std::make_shared<sandbox::ListedInstrument>(row, std::move(named)),
        request.queryValue("use_case"), request.path[2], [reply](const ErrorPtr& error) {
          reply(error ? errorAnswer(error) : HttpAnswer{204, nullptr});
        });
  };
  routes_.add("DELETE", instruments, remove);
  routes_.add("DELETE", {"v1", "users", "*", "instruments", "*"}, remove);
}

}  // namespace hlv::services
