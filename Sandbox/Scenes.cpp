#include "Sandbox/Scenes.h"

#include "Sandbox/Logging/MaskedText.h"
#include "Sandbox/TestCards.h"

namespace hlv::sandbox {

std::vector<std::string> Scenes::names() {
  return {"instrument-without-card", "card-without-instrument", "half-deleted", "same-card-twice",
          "lost-token"};
}

std::string Scenes::make(const std::string& name) {
  if (name == "instrument-without-card") {
    provider_.plant(email_, EnteredCard::make(findTestCard("amex")->fields));
    return "";
  }
  if (name == "card-without-instrument") {
    return withNewestCard([&](const BackendCard& card) {
      return provider_.lose(card.externalIdentifier.value_or(""));
    });
  }
  if (name == "half-deleted") {
    return withNewestCard([&](const BackendCard& card) {
      backend_.deleteCard(card.halvoID, email_);
      return true;
    });
  }
  if (name == "same-card-twice") {
    return withNewestCard([&](const BackendCard& card) {
      return provider_.storeAgain(card.externalIdentifier.value_or(""));
    });
  }
  if (name == "lost-token") {
    return backend_.loseToken(email_) ? "" : "The guest has no token to lose; add a first card.";
  }
  std::string possible;
  for (const auto& each : names()) possible += (possible.empty() ? "" : ", ") + each;
  return "There is no scene '" + maskedText(name) + "'; possible are: " + possible + ".";
}

std::string Scenes::withNewestCard(const std::function<bool(const BackendCard&)>& change) {
  const auto cards = backend_.cardsOf(email_);
  if (cards.empty()) return "The guest has no card; add one first.";
  return change(cards.back()) ? "" : "The provider does not hold the guest's newest card.";
}

}  // namespace hlv::sandbox
