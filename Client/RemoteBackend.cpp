#include "Client/RemoteBackend.h"

#include "Sandbox/Backend/Requests.h"
#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/JSON/CardRecords.h"
#include "Sandbox/Masking/MaskedText.h"
#include "Values/Send.h"

namespace hlv::client {
namespace {

using sandbox::BackendErrorCode;
using sandbox::cardIn;
using sandbox::guestIn;
using sandbox::jsonOf;
using sandbox::objectIn;
using sandbox::Operation;
using sandbox::orNull;

using GuestResults = std::tuple<std::shared_ptr<HLVSDKGuest>, ErrorPtr>;
using CardResults =
    std::tuple<std::shared_ptr<HLVSDKGuest>, std::shared_ptr<HLVSDKCreditCard>, ErrorPtr>;

[[noreturn]] void refuse(BackendErrorCode code, const std::string& sentence) {
  throw sandbox::Refusal{sandbox::SandboxError::make(sandbox::backendErrorDomain, code, sentence)};
}

std::string guestPath(const NullableString& email) {
  if (length(email) == 0) refuse(BackendErrorCode::invalidRequest, "The request names no guest.");
  return "/v1/guests/" + percentEncoded(*email);
}

std::string cardPath(const NullableString& email, const NullableString& card) {
  const auto guest = guestPath(email);
  if (length(card) == 0) {
    refuse(BackendErrorCode::unknownCard, "The guest has no card with this ID.");
  }
  return guest + "/cards/" + percentEncoded(*card);
}

/// People type card numbers where a name or a street belongs, and none is to leave for the backend.
Json masked(Json json) {
  if (auto* text = json.get_ptr<std::string*>()) *text = sandbox::maskedText(*text);
  if (json.is_structured()) {
    for (auto& item : json) item = masked(std::move(item));
  }
  return json;
}

GuestResults guestResults(RemoteGuests& guests, const Json& body) {
  return {guests.learn(guestIn(objectIn(body, "guest"))), nullptr};
}

CardResults cardResults(RemoteGuests& guests, const Json& body) {
  auto card = std::make_shared<sandbox::StoredCard>(cardIn(objectIn(body, "credit_card")));
  return {std::get<0>(guestResults(guests, body)), std::move(card), nullptr};
}

/// Missing when the backend's reply lacks it on purpose.
NullableList<HLVSDKCreditCard> cardsOf(const Json& body) {
  const auto* list = sandbox::nullableListIn(body, "credit_cards");
  if (!list) return std::nullopt;
  return objectsOf(sandbox::recordsIn(*list, sandbox::cardIn));
}

}  // namespace

RemoteService::RequestMaker RemoteBackend::inSession(RemoteService::RequestMaker make) const {
  return [session = session_, make = std::move(make)] {
    auto request = make();
    request.session = session->token();
    return request;
  };
}

void RemoteBackend::updateCurrentGuestWithRequest(
    const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
    HLVSDKGuestCompletion completion) {
  const auto known = std::dynamic_pointer_cast<sandbox::UpdateGuestRequest>(request);
  const auto token = known ? known->paymentToken() : std::nullopt;
  const auto signedIn = send(local_->host()->currentGuest(), &HLVSDKGuest::email);
  service_.call(
      {Operation::updateGuest}, std::move(completion), inSession([token, signedIn] {
        if (!signedIn) refuse(BackendErrorCode::notSignedIn, "Nobody is signed in.");
        return ClientRequest{"PATCH", guestPath(signedIn), {{"payment_token", orNull(token)}}};
      }),
      [guests = guests_](const Json& body) { return guestResults(*guests, body); });
}

void RemoteBackend::addCreditCardForGuest(
    const std::shared_ptr<HLVSDKGuest>& guest,
    const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& requestInfo,
    HLVSDKGuestCardCompletion completion) {
  sandbox::AddCardRequest read(requestInfo);
  sandbox::Call call{Operation::addCard, read.useCase()};
  service_.call(call, std::move(completion),
                inSession([email = send(guest, &HLVSDKGuest::email),
                           body = masked(jsonOf(Value(read.body))), problem = read.problem] {
                  if (problem) throw sandbox::Refusal{problem};
                  ClientRequest request{"POST", guestPath(email) + "/cards", body};
                  request.idempotencyKey = RemoteService::freshIdempotencyKey();
                  return request;
                }),
                [guests = guests_](const Json& answer) { return cardResults(*guests, answer); });
}

void RemoteBackend::deleteCreditCardWithID(const NullableString& ID,
                                           const std::shared_ptr<HLVSDKGuest>& guest,
                                           HLVSDKGuestCompletion completion) {
  service_.call({Operation::deleteCard, {}, ID.value_or("")}, std::move(completion),
                inSession([ID, email = send(guest, &HLVSDKGuest::email)] {
                  return ClientRequest{"DELETE", cardPath(email, ID), nullptr};
                }),
                [guests = guests_](const Json& body) { return guestResults(*guests, body); });
}

void RemoteBackend::updateCreditCard(const NullableString& ID, const Dictionary& address,
                                     const std::shared_ptr<HLVSDKGuest>& guest,
                                     HLVSDKGuestCardCompletion completion) {
  service_.call({Operation::updateCard, {}, ID.value_or("")}, std::move(completion),
                inSession([ID, address = masked(jsonOf(Value(address))),
                           email = send(guest, &HLVSDKGuest::email)] {
                  return ClientRequest{"PATCH", cardPath(email, ID), address};
                }),
                [guests = guests_](const Json& body) { return cardResults(*guests, body); });
}

void RemoteBackend::fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                                          HLVSDKCreditCardsCompletion completion) {
  service_.call({Operation::fetchCards}, std::move(completion),
                inSession([email = send(guest, &HLVSDKGuest::email)] {
                  return ClientRequest{"GET", guestPath(email) + "/cards", nullptr};
                }),
                [](const Json& body) {
                  return std::tuple<NullableList<HLVSDKCreditCard>, ErrorPtr>(cardsOf(body),
                                                                              nullptr);
                });
}

}  // namespace hlv::client
