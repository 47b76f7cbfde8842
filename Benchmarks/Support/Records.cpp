#include "Benchmarks/Support/Records.h"

#include <iterator>
#include <utility>

namespace hlv::bench {
namespace {

constexpr const char* useCases[] = {"private", "business", "default"};

}  // namespace

Records::Records() {
  newGuest->emailText = "new@example.com";
  guest->emailText = "old@example.com";
  guest->token = "token";
  card->number = "4222222222222";
  addPair(2, "2222", Known::byIdentifier);
  addPair(0, "0001", Known::byDigits);
  addPair(1, "0002", Known::notAtAll);
  guest->cards = cards;
}

Records::Records(std::size_t size) {
  guest->token = "token";
  for (std::size_t i = 0; i < size; ++i) {
    const auto number = std::to_string(10'000 + i).substr(1);
    const auto known = i % 10 < 5   ? Known::byIdentifier
                       : i % 10 < 9 ? Known::byDigits
                                    : Known::notAtAll;
    addPair(i % std::size(useCases), number, known);
  }
}

void Records::addPair(std::size_t useCase, const std::string& digits, Known known) {
  auto instrument = std::make_shared<testing::FakeInstrument>();
  instrument->id = "plv-" + digits;
  instrument->number = "*********" + digits;
  instruments[useCase].push_back(std::move(instrument));

  auto stored = std::make_shared<testing::FakeStoredCard>();
  stored->id = "card-" + digits;
  stored->digits = digits;
  stored->useCaseName = useCases[useCase];
  if (known == Known::byIdentifier) stored->external = "plv-" + digits;
  if (known == Known::notAtAll) stored->external = "gone-" + digits;
  cards.push_back(std::move(stored));
}

}  // namespace hlv::bench
