#include "Sandbox/Backend/Guest.h"

#include "Sandbox/Backend/BackendTables.h"
#include "Sandbox/Backend/StoredCard.h"

namespace hlv::sandbox {

NullableString Guest::paylevenToken() const {
  return store_->readOrNothing(
      [this](Database& database) { return readGuestToken(database, email_); });
}

NullableList<HLVSDKCreditCard> Guest::creditCards() const {
  List<HLVSDKCreditCard> cards;
  for (auto& card :
       store_->readOrNothing([this](Database& database) { return readCards(database, email_); })) {
    cards.push_back(std::make_shared<StoredCard>(std::move(card)));
  }
  return cards;
}

std::int64_t Guest::revision() const { return store_->readOrNothing(readRevision); }

}  // namespace hlv::sandbox
