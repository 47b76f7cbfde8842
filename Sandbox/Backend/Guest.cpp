#include "Sandbox/Backend/Guest.h"

#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Backend/BackendTables.h"
#include "Sandbox/Backend/StoredCard.h"

namespace hlv::sandbox {

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

}  // namespace hlv::sandbox
