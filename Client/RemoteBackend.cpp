#include <utility>

#include "Client/RemoteService.h"
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
using CardListResults = std::tuple<NullableList<HLVSDKCreditCard>, ErrorPtr>;

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
CardListResults cardListResults(RemoteGuests& /*guests*/, const Json& body) {
  const auto* list = sandbox::nullableListIn(body, "credit_cards");
  if (!list) return {std::nullopt, nullptr};
  return {objectsOf(sandbox::recordsIn(*list, sandbox::cardIn)), nullptr};
}

/// Reads requests and guests on the caller's thread.
///
/// Threading: any.
class RemoteBackend final : public HLVSDKAPIManager {
 public:
  RemoteBackend(RemoteService service, std::shared_ptr<sandbox::Sandbox> local,
                std::shared_ptr<const RemoteSession> session, std::shared_ptr<RemoteGuests> guests)
      : service_(std::move(service)),
        local_(std::move(local)),
        session_(std::move(session)),
        guests_(std::move(guests)) {}

  void updateCurrentGuestWithRequest(const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
                                     HLVSDKGuestCompletion completion) override {
    const auto known = std::dynamic_pointer_cast<sandbox::UpdateGuestRequest>(request);
    const auto token = known ? known->paymentToken() : std::nullopt;
    const auto signedIn = send(local_->host()->currentGuest(), &HLVSDKGuest::email);
    call({Operation::updateGuest}, std::move(completion), guestResults, [token, signedIn] {
      if (!signedIn) refuse(BackendErrorCode::notSignedIn, "Nobody is signed in.");
      return ClientRequest{"PATCH", guestPath(signedIn), {{"payment_token", orNull(token)}}};
    });
  }

  void addCreditCardForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                             const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& requestInfo,
                             HLVSDKGuestCardCompletion completion) override {
    sandbox::AddCardRequest read(requestInfo);
    call({Operation::addCard, read.useCase()}, std::move(completion), cardResults,
         [email = send(guest, &HLVSDKGuest::email), body = masked(jsonOf(Value(read.body))),
          problem = read.problem] {
           if (problem) throw sandbox::Refusal{problem};
           return ClientRequest{.method = "POST",
                                .target = guestPath(email) + "/cards",
                                .body = body,
                                .idempotencyKey = RemoteService::freshIdempotencyKey()};
         });
  }

  void deleteCreditCardWithID(const NullableString& ID, const std::shared_ptr<HLVSDKGuest>& guest,
                              HLVSDKGuestCompletion completion) override {
    call({Operation::deleteCard, {}, ID.value_or("")}, std::move(completion), guestResults,
         [ID, email = send(guest, &HLVSDKGuest::email)] {
           return ClientRequest{"DELETE", cardPath(email, ID)};
         });
  }

  void updateCreditCard(const NullableString& ID, const Dictionary& address,
                        const std::shared_ptr<HLVSDKGuest>& guest,
                        HLVSDKGuestCardCompletion completion) override {
    call({Operation::updateCard, {}, ID.value_or("")}, std::move(completion), cardResults,
         [ID, address = masked(jsonOf(Value(address))), email = send(guest, &HLVSDKGuest::email)] {
           return ClientRequest{"PATCH", cardPath(email, ID), address};
         });
  }

  void fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                             HLVSDKCreditCardsCompletion completion) override {
    call({Operation::fetchCards}, std::move(completion), cardListResults,
         [email = send(guest, &HLVSDKGuest::email)] {
           return ClientRequest{"GET", guestPath(email) + "/cards"};
         });
  }

 private:
  /// With the session of the moment at which the request is made.
  template <class... Results>
  void call(const sandbox::Call& call, std::function<void(Results...)> completion,
            std::tuple<Results...> (*read)(RemoteGuests&, const Json&),
            RemoteService::RequestMaker make) const {
    service_.call(
        call, std::move(completion),
        [session = session_, make = std::move(make)] {
          auto request = make();
          request.session = session->token();
          return request;
        },
        [guests = guests_, read](const Json& body) { return read(*guests, body); });
  }

  const RemoteService service_;
  const std::shared_ptr<sandbox::Sandbox> local_;
  const std::shared_ptr<const RemoteSession> session_;
  const std::shared_ptr<RemoteGuests> guests_;
};

}  // namespace

std::shared_ptr<HLVSDKAPIManager> remoteBackend(RemoteService service,
                                                std::shared_ptr<sandbox::Sandbox> local,
                                                std::shared_ptr<const RemoteSession> session,
                                                std::shared_ptr<RemoteGuests> guests) {
  return std::make_shared<RemoteBackend>(std::move(service), std::move(local), std::move(session),
                                         std::move(guests));
}

}  // namespace hlv::client
