// What the two services answer with, made once and never again.
//
// Threading: one thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "Tests/Support/Answer.h"
#include "Tests/Support/Held.h"

namespace hlv::bench {

/// A guest with three instruments: a card knows the default one by its identifier and the private
/// one by its digits, and none knows the business one. Texts are short enough to be copied without
/// an allocation, so that what is counted is the kit's.
struct Records {
  Records() {
    newGuest->emailText = "new@example.com";
    guest->emailText = "old@example.com";
    guest->token = "token";
    card->number = "4222222222222";
    addPair(2, "2222", Known::byIdentifier);
    addPair(0, "0001", Known::byDigits);
    addPair(1, "0002", Known::notAtAll);
    guest->cards = answers_[0].cards;
  }
  /// The same for `size` instruments and as many cards, over all use cases: of ten instruments,
  /// five are known by identifier, four by digits, and one by no card.
  explicit Records(std::size_t size) {
    guest->token = "token";
    for (std::size_t i = 0; i < size; ++i) {
      const auto number = std::to_string(10'000 + i).substr(1);
      const auto known = i % 10 < 5   ? Known::byIdentifier
                         : i % 10 < 9 ? Known::byDigits
                                      : Known::notAtAll;
      addPair(i % std::size(useCases), number, known);
    }
  }

  /// What a service brings.
  const testing::Answer& answerOf(testing::Service service) const {
    return answers_[service == testing::Service::privateList    ? 0
                    : service == testing::Service::businessList ? 1
                                                                : 2];
  }

  const std::shared_ptr<testing::FakeGuest> newGuest = std::make_shared<testing::FakeGuest>();
  const std::shared_ptr<testing::FakeGuest> guest = std::make_shared<testing::FakeGuest>();
  const std::shared_ptr<testing::FakeEnteredCard> card =
      std::make_shared<testing::FakeEnteredCard>();
  const std::shared_ptr<testing::FakeAddress> address = std::make_shared<testing::FakeAddress>();

  /// What has been asked of the services.
  std::size_t calls = 0;

 private:
  enum class Known { byIdentifier, byDigits, notAtAll };
  static constexpr const char* useCases[] = {"private", "business", "default"};

  void addPair(std::size_t useCase, const std::string& digits, Known known) {
    auto instrument = std::make_shared<testing::FakeInstrument>();
    instrument->id = "plv-" + digits;
    instrument->number = "*********" + digits;
    answers_[useCase].instruments->push_back(std::move(instrument));

    auto stored = std::make_shared<testing::FakeStoredCard>();
    stored->id = "card-" + digits;
    stored->digits = digits;
    stored->useCaseName = useCases[useCase];
    if (known == Known::byIdentifier) stored->external = "plv-" + digits;
    if (known == Known::notAtAll) stored->external = "gone-" + digits;
    for (auto& answer : answers_) {
      answer.card = stored;
      answer.cards->push_back(stored);
    }
  }

  const testing::Answer first_{.token = "token",
                               .instruments = List<PLVCreditCardPaymentInstrument>(),
                               .cards = List<HLVSDKCreditCard>(),
                               .guest = guest};
  /// Of the lists of the private, the business and the default use case; the rest is the same.
  std::array<testing::Answer, 3> answers_{first_, first_, first_};
};

}  // namespace hlv::bench
