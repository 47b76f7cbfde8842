// What the two services answer with, made once and never again.
//
// Threading: one thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>

#include "Tests/Support/FakeRecords.h"

namespace hlv::bench {

/// A guest with three instruments: a card knows the default one by its identifier and the private
/// one by its digits, and none knows the business one. Texts are short enough to be copied without
/// an allocation, so that what is counted is the kit's.
struct Records {
  Records();
  /// The same for `size` instruments and as many cards, over all use cases: of ten instruments,
  /// five are known by identifier, four by digits, and one by no card.
  explicit Records(std::size_t size);

  const std::shared_ptr<testing::FakeGuest> newGuest = std::make_shared<testing::FakeGuest>();
  const std::shared_ptr<testing::FakeGuest> guest = std::make_shared<testing::FakeGuest>();
  const std::shared_ptr<testing::FakeEnteredCard> card =
      std::make_shared<testing::FakeEnteredCard>();
  const std::shared_ptr<testing::FakeAddress> address = std::make_shared<testing::FakeAddress>();

  /// Of the private, the business and the default use case.
  std::array<List<PLVCreditCardPaymentInstrument>, 3> instruments;
  /// What the backend knows.
  List<HLVSDKCreditCard> cards;
  /// What has been asked of the services.
  std::size_t calls = 0;

 private:
  enum class Known { byIdentifier, byDigits, notAtAll };
  void addPair(std::size_t useCase, const std::string& digits, Known known);
};

}  // namespace hlv::bench
