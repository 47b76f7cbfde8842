// When an operation is over and the app has let go of its card, the process remembers nothing of
// it.
//
// The digits of these cards are computed whenever somebody asks, so the only readable copies are
// those that the kit made. A security code has as many of them: nothing else looks like that.
#include <cstring>
#include <vector>

#include "Tests/Secrecy/CardDataSearch.h"
#include "Tests/Secrecy/ProcessMemory.h"
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

/// Digits that are nowhere until they are asked for, and others for each seed.
struct HiddenDigits {
  std::uint32_t seed;
  std::size_t length;

  NullableString readable() const {
    NullableString digits;
    digits.emplace().assign(length, '4');
    auto state = seed * 2654435761U;
    for (std::size_t i = 1; i < length; ++i) {
      state = state * 1664525U + 1013904223U;
      (*digits)[i] = static_cast<char>('0' + (state >> 16U) % 10U);
    }
    return digits;
  }
  CardDataSearch search() const {
    auto digits = readable();
    CardDataSearch made(*digits, "");
    ::explicit_bzero(&digits->front(), digits->size());
    return made;
  }
  std::string lastFour() const {
    auto digits = readable();
    std::string last = digits->substr(length - 4);
    ::explicit_bzero(&digits->front(), digits->size());
    return last;
  }
};

struct HiddenCard final : FakeEnteredCard {
  HiddenDigits hiddenNumber, hiddenCode;
  HiddenCard(HiddenDigits itsNumber, HiddenDigits itsCode)
      : hiddenNumber(itsNumber), hiddenCode(itsCode) {}
  NullableString pan() const override { return hiddenNumber.readable(); }
  NullableString cvv() const override { return hiddenCode.readable(); }
};

/// Whether the memory shows one of them.
bool isInMemory(const std::vector<CardDataSearch>& searches) {
  // Fewer digits may be there by chance, in addresses that are written out. A run of so many meets
  // every tenth byte.
  constexpr std::size_t tooManyInMemory = 10;
  bool isThere = false;
  const auto seen = showProcessMemory([&](std::string_view bytes) {
    for (auto at = tooManyInMemory - 1; at < bytes.size() && !isThere; at += tooManyInMemory) {
      if (bytes[at] < '0' || bytes[at] > '9') continue;
      const auto around = bytes.substr(at - tooManyInMemory + 1, 2 * tooManyInMemory);
      for (const auto& search : searches) {
        auto found = search.in(around);
        while (found && found->digits < tooManyInMemory) found = search.in(around, found->at + 1);
        isThere = isThere || found;
      }
    }
    return isThere;
  });
  EXPECT_GT(seen, 0U);
  return isThere;
}

/// Runs `work` so far down the stack that the frames of a later search do not cover its traces.
template <class Work>
__attribute__((noinline)) void farDownTheStack(Work work) {
  char space[1U << 16U];
  std::memset(space, 0, sizeof space);
  work();
  asm volatile("" : : "r"(space) : "memory");
}

/// Up to fifteen characters lie in the string itself, and more on the heap. There an allocator
/// writes over the beginning of what is freed, or gives it to somebody else, unless it is unusually
/// large or the sanitizer keeps it.
#ifdef HLV_KEEPS_WHAT_IS_FREED
constexpr std::size_t lengths[] = {15, 19};
#else
constexpr std::size_t lengths[] = {15, 19, 600};
#endif

class ProcessMemoryTest : public KitTest {
 protected:
  void token() { provider.tokens.answer("tok", nullptr); }
  void stored() { provider.adds.answer(nullptr); }
  void listed() {
    provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, nullptr);
  }
  void registered(const ErrorPtr& refusal = nullptr) {
    if (backend.guestUpdates.count() > 0) backend.guestUpdates.answer(guest, nullptr);
    backend.cardAdds.answer(guest, storedCard, refusal);
  }
};

TEST_F(ProcessMemoryTest, HoldsNoNumberAndNoCodeAfterAnyOperation) {
  const auto refusal = makeError("refused");
  const struct {
    const char* name;
    std::function<void()> answers;
    bool isFirst;
    bool isValid = true, isOnline = true;
    int reports = 1;
  } rows[] = {
      {"first card", [&] { token(), listed(), registered(); }, true},
      {"further card", [&] { stored(), listed(), registered(); }, false},
      {"invalid", [] {}, true, false},
      {"offline", [] {}, true, true, false},
      {"first declined", [&] { provider.tokens.answer(std::nullopt, refusal); }, true},
      {"further refused", [&] { stored(), listed(), registered(refusal); }, false},
      {"never answered", [&] { host->dropEverything(); }, true, true, true, 0},
  };
  std::uint32_t seed = 0;
  for (const auto& row : rows) {
    for (const std::size_t length : lengths) {
      SCOPED_TRACE(row.name + (", digits: " + std::to_string(length)));
      const HiddenDigits number{++seed, length};
      const HiddenDigits code{++seed, length};
      farDownTheStack([&] {
        outcome = {};
        guest->token = row.isFirst ? NullableString() : "tok";
        host->network->state = row.isOnline ? 1 : 0;
        instrument->number = "************" + number.lastFour();
        auto entered = std::make_shared<HiddenCard>(number, code);
        entered->valid = row.isValid;
        const std::weak_ptr<void> gone = entered;
        const auto manager = makeManager();
        manager->addPaymentInstrument(entered, address, guest, guestCard());
        row.answers();
        platform->runEverything();
        EXPECT_EQ(outcome.count, row.reports);
        entered.reset();
        EXPECT_TRUE(gone.expired()) << "somebody holds the card";
      });
      EXPECT_FALSE(isInMemory({number.search(), code.search()}));
    }
  }
}

TEST_F(ProcessMemoryTest, IsSearchedWhereCopiesAreLeft) {
  const HiddenDigits digits[] = {{1001, 16}, {1002, 15}, {1003, 12}};
  for (const auto& hidden : digits) EXPECT_FALSE(isInMemory({hidden.search()}));
  {
    // Behind so much that the allocator's own notes about a free block do not cover it.
    std::string freed(600, '-');
    freed += *digits[0].readable();
  }
  EXPECT_TRUE(isInMemory({digits[0].search()})) << "freed without being wiped";
  farDownTheStack([&] { const auto left = digits[1].readable(); });
  EXPECT_TRUE(isInMemory({digits[1].search()})) << "left on the stack";
  static NullableString data;
  data = digits[2].readable();
  EXPECT_TRUE(isInMemory({digits[2].search()})) << "in the program's data";
}

}  // namespace
}  // namespace hlv::testing
