#include "Sandbox/Backend/BackendClient.h"

#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Backend/BackendTables.h"
#include "Sandbox/Backend/Requests.h"
#include "Sandbox/Backend/StoredCard.h"
#include "Sandbox/Errors/ErrorCodes.h"
#include "Values/Send.h"

namespace hlv::sandbox {
namespace {

using backend::Caller;

Caller callerFor(const std::shared_ptr<HLVSDKGuest>& guest) {
  return {Caller::Kind::app, send(guest, &HLVSDKGuest::email)};
}

std::shared_ptr<HLVSDKCreditCard> objectOf(BackendCard card) {
  return std::make_shared<StoredCard>(std::move(card));
}

using GuestResults = std::tuple<std::shared_ptr<HLVSDKGuest>, ErrorPtr>;
using CardResults =
    std::tuple<std::shared_ptr<HLVSDKGuest>, std::shared_ptr<HLVSDKCreditCard>, ErrorPtr>;
using CardsResults = std::tuple<NullableList<HLVSDKCreditCard>, ErrorPtr>;

/// Reads requests and guests on the caller's thread, and completes on the backend's.
class BackendClient final : public HLVSDKAPIManager {
 public:
  BackendClient(std::shared_ptr<Guests> guests, const Service::Surroundings& surroundings)
      : guests_(std::move(guests)),
        service_("backend", backendErrorDomain, ServiceThread::backend, surroundings) {}

  void updateCurrentGuestWithRequest(const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
                                     HLVSDKGuestCompletion completion) override {
    const auto known = std::dynamic_pointer_cast<UpdateGuestRequest>(request);
    const auto token = known ? known->paymentToken() : std::nullopt;
    service_.take({Operation::updateGuest}, std::move(completion),
                  [guests = guests_, token](Database& database, auto) {
                    const Caller caller{Caller::Kind::app, backend::signedInEmail(database)};
                    return GuestResults(
                        guests->guest(backend::updateGuest(database, caller, token)), nullptr);
                  });
  }

  void addCreditCardForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                             const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& requestInfo,
                             HLVSDKGuestCardCompletion completion) override {
    AddCardRequest request(requestInfo);
    Call call{Operation::addCard, request.useCase()};
    service_.take(std::move(call), std::move(completion),
                  [guests = guests_, caller = callerFor(guest), request = std::move(request)](
                      Database& database, auto) {
                    if (request.problem) throw Refusal{request.problem};
                    auto [owner, card] = backend::addCard(database, caller, request.body);
                    return CardResults(guests->guest(owner), objectOf(std::move(card)), nullptr);
                  });
  }

  void deleteCreditCardWithID(const NullableString& ID, const std::shared_ptr<HLVSDKGuest>& guest,
                              HLVSDKGuestCompletion completion) override {
    service_.take({Operation::deleteCard, {}, ID.value_or("")}, std::move(completion),
                  [guests = guests_, ID, caller = callerFor(guest)](Database& database, auto) {
                    return GuestResults(guests->guest(backend::deleteCard(database, caller, ID)),
                                        nullptr);
                  });
  }

  void updateCreditCard(const NullableString& ID, const Dictionary& address,
                        const std::shared_ptr<HLVSDKGuest>& guest,
                        HLVSDKGuestCardCompletion completion) override {
    service_.take(
        {Operation::updateCard, {}, ID.value_or("")}, std::move(completion),
        [guests = guests_, ID, address, caller = callerFor(guest)](Database& database, auto) {
          auto [owner, card] = backend::updateCard(database, caller, ID, address);
          return CardResults(guests->guest(owner), objectOf(std::move(card)), nullptr);
        });
  }

  void fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                             HLVSDKCreditCardsCompletion completion) override {
    service_.take({Operation::fetchCards}, std::move(completion),
                  [caller = callerFor(guest)](Database& database, std::optional<FaultKind> fault) {
                    const auto cards = backend::fetchCards(database, caller, fault);
                    return cards ? CardsResults(objectsOf(*cards), nullptr) : CardsResults();
                  });
  }

 private:
  const std::shared_ptr<Guests> guests_;
  const Service service_;
};

}  // namespace

NullableString Guest::paylevenToken() const {
  return store_->readOrNothing(
      [this](Database& database) { return readGuestToken(database, email_); });
}

NullableList<HLVSDKCreditCard> Guest::creditCards() const {
  return objectsOf(
      store_->readOrNothing([this](Database& database) { return readCards(database, email_); }));
}

std::shared_ptr<Guest> Guests::guest(const std::string& email) {
  const Lock lock(mutex_);
  if (auto known = guests_[email].lock()) return known;
  std::erase_if(guests_, [](const auto& guest) { return guest.second.expired(); });
  auto guest = std::make_shared<Guest>(email, store_);
  guests_[email] = guest;
  return guest;
}

std::shared_ptr<Guest> Guests::signedIn() {
  const auto email = store_->readOrNothing(backend::signedInEmail);
  return email ? guest(*email) : nullptr;
}

std::shared_ptr<HLVSDKAPIManager> makeBackendClient(std::shared_ptr<Guests> guests,
                                                    const Service::Surroundings& surroundings) {
  return std::make_shared<BackendClient>(std::move(guests), surroundings);
}

}  // namespace hlv::sandbox
