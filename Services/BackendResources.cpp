#include "Services/BackendResources.h"

#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKUpdateGuestRequestInfo.h"
#include "Sandbox/ErrorCodes.h"
#include "Sandbox/Logging/MaskedText.h"
#include "Sandbox/SandboxError.h"
#include "Services/BackendRecords.h"
#include "Services/Http/ErrorBody.h"
#include "Services/OpenAPI.h"
#include "Services/ReceivedCard.h"

namespace hlv::services {
namespace {

using sandbox::BackendErrorCode;

/// A guest as a request names it.
class NamedGuest final : public HLVSDKGuest {
 public:
  explicit NamedGuest(std::string email) : email_(std::move(email)) {}
  NullableString email() const override { return email_; }
  NullableString paylevenToken() const override { return std::nullopt; }
  NullableList<HLVSDKCreditCard> creditCards() const override { return std::nullopt; }

 private:
  const std::string email_;
};

std::shared_ptr<HLVSDKGuest> guestOf(const HttpRequest& request) {
  return std::make_shared<NamedGuest>(request.path[2]);
}

ErrorPtr backendError(BackendErrorCode code, const std::string& sentence) {
  return sandbox::SandboxError::make(sandbox::backendErrorDomain, code, sentence);
}

void requireNoCardNumber(const Json& json) {
  if (const auto* text = json.get_ptr<const std::string*>();
      text && sandbox::maskedText(*text) != *text) {
    throw Refused{422, "card-number-refused", "The backend takes no card numbers."};
  }
  if (!json.is_structured()) return;
  for (const auto& item : json) requireNoCardNumber(item);
}

Json bodyOf(const HttpRequest& request) {
  auto body = parsedObject(request.body);
  requireNoCardNumber(body);
  return body;
}

void requireAddress(const Json& address) {
  requireKnownMembers(address, {"street", "city", "country_code", "zip", "business_name"});
  for (const auto& [key, value] : address.items()) {
    if (!value.is_string()) throw Refused{422, "wrong-type", "An address holds texts only."};
  }
}

void requireAddCardBody(const Json& body) {
  requireKnownMembers(body, {"credit_card", "provider"});
  if (const auto provider = body.find("provider");
      provider == body.end() || !provider->is_number_integer()) {
    throw Refused{422, "wrong-type", "The member 'provider' is no number."};
  }
  const auto& card = objectIn(body, "credit_card");
  requireKnownMembers(
      card, {"last_four_digits", "brand", "use_case", "external_identifier", "card_holder",
             "expiry_month", "expiry_year", "billing_address", "plv_token"});
  for (const auto& [key, value] : card.items()) {
    if (key == "billing_address") {
      requireAddress(objectIn(card, "billing_address"));
    } else if (!value.is_string()) {
      throw Refused{422, "wrong-type", "A card holds texts and an address only."};
    }
  }
}

/// Null when `guest`, the one who is signed in, is the one of the request.
ErrorPtr problemWith(const std::shared_ptr<HLVSDKGuest>& guest, const HttpRequest& request) {
  if (!guest) return backendError(BackendErrorCode::notSignedIn, "Nobody is signed in.");
  if (isEqualToString(guest->email(), request.path[2])) return nullptr;
  return backendError(BackendErrorCode::foreignGuest,
                      "The guest of the request is not the one signed in.");
}

HLVSDKGuestCompletion answeringGuest(const Reply& reply) {
  return [reply](const std::shared_ptr<HLVSDKGuest>& guest, const ErrorPtr& error) {
    reply(error ? errorAnswer(error) : HttpAnswer{200, {{"guest", jsonOf(guest)}}});
  };
}

HLVSDKGuestCardCompletion answeringGuestAndCard(int status, const Reply& reply) {
  return [status, reply](const std::shared_ptr<HLVSDKGuest>& guest,
                         const std::shared_ptr<HLVSDKCreditCard>& card, const ErrorPtr& error) {
    reply(error ? errorAnswer(error)
                : HttpAnswer{status, {{"guest", jsonOf(guest)}, {"credit_card", jsonOf(card)}}});
  };
}

}  // namespace

BackendResources::BackendResources(std::shared_ptr<sandbox::Sandbox> sandbox)
    : sandbox_(std::move(sandbox)), idempotency_("backend", sandbox_) {
  routes_.add("GET", {"openapi.json"}, [](const HttpRequest&, const Reply& reply) {
    reply({200, Json::parse(backendOpenAPI())});
  });
  addGuests();
  addCards();
}

void BackendResources::addGuests() {
  const std::vector<std::string> path{"v1", "guests", "*"};
  routes_.add("GET", path, [this](const HttpRequest& request, const Reply& reply) {
    const auto guest = sandbox_->hostBehindDoors()->currentGuest();
    if (const auto problem = problemWith(guest, request)) return reply(errorAnswer(problem));
    reply({200, jsonOf(guest)});
  });
  routes_.add("PUT", path, [this](const HttpRequest& request, const Reply& reply) {
    const auto problem = sandbox_->signIn(request.path[2]);
    if (!problem.empty()) {
      return reply(errorAnswer(backendError(BackendErrorCode::invalidRequest, problem)));
    }
    reply({200, jsonOf(sandbox_->hostBehindDoors()->currentGuest())});
  });
  routes_.add("PATCH", path, [this](const HttpRequest& request, const Reply& reply) {
    const auto body = bodyOf(request);
    requireKnownMembers(body, {"payment_token"});
    const auto token = textIn(body, "payment_token");
    const auto host = sandbox_->hostBehindDoors();
    if (const auto problem = problemWith(host->currentGuest(), request)) {
      return reply(errorAnswer(problem));
    }
    const auto update = host->makeUpdateGuestRequestInfo();
    update->setPaymentToken(token);
    host->apiManager()->updateCurrentGuestWithRequest(update, answeringGuest(reply));
  });
}

void BackendResources::addCards() {
  const std::vector<std::string> cards{"v1", "guests", "*", "cards"};
  const std::vector<std::string> card{"v1", "guests", "*", "cards", "*"};
  routes_.add("GET", cards, [this](const HttpRequest& request, const Reply& reply) {
    sandbox_->hostBehindDoors()->apiManager()->fetchGuestCreditCards(
        guestOf(request),
        [reply](const NullableList<HLVSDKCreditCard>& list, const ErrorPtr& error) {
          reply(error ? errorAnswer(error) : HttpAnswer{200, {{"credit_cards", jsonOf(list)}}});
        });
  });
  const auto addCard = [](const std::shared_ptr<Host>& host, const HttpRequest& request,
                          const Reply& reply) {
    const auto body = bodyOf(request);
    requireAddCardBody(body);
    host->apiManager()->addCreditCardForGuest(guestOf(request),
                                              ReceivedCard::make(dictionaryOf(body)),
                                              answeringGuestAndCard(201, reply));
  };
  routes_.add("POST", cards, idempotency_.around(addCard));
  routes_.add("PATCH", card, [this](const HttpRequest& request, const Reply& reply) {
    const auto address = bodyOf(request);
    requireAddress(address);
    sandbox_->hostBehindDoors()->apiManager()->updateCreditCard(
        request.path[4], dictionaryOf(address), guestOf(request),
        answeringGuestAndCard(200, reply));
  });
  routes_.add("DELETE", card, [this](const HttpRequest& request, const Reply& reply) {
    sandbox_->hostBehindDoors()->apiManager()->deleteCreditCardWithID(
        request.path[4], guestOf(request), answeringGuest(reply));
  });
}

}  // namespace hlv::services
