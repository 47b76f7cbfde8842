// The life of a guest in the sandbox: calls of both services, faults, whatever a tester types, and
// a network and a process that come and go. What was answered has to be what the services hold.
#include <fuzzer/FuzzedDataProvider.h>

#include <set>

#include "Sandbox/Cards/CardRules.h"
#include "Tests/Sandbox/SandboxTest.h"
#include "Tests/Secrecy/CardDataSearch.h"

namespace hlv::sandbox {
namespace {

class GuestLife final : public SandboxTest {
 public:
  GuestLife(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

  void TestBody() override {
    start(7);
    while (bytes_.remaining_bytes() > 0) {
      if (bytes_.ConsumeBool()) sandbox->setReachable(bytes_.ConsumeBool());
      if (bytes_.ConsumeBool()) typeSomething();
      if (bytes_.ConsumeBool()) start();
      call();
      compare();
    }
    // Whoever holds the store keeps the file from being complete.
    stop();
    const auto left = contentOf(storePath());
    for (const auto& card : testCards()) {
      EXPECT_EQ(testing::CardDataSearch(card.fields.pan, card.fields.cvv).in(left), std::nullopt);
    }
  }

 private:
  /// One of the items, or nothing where there are none.
  template <class Item>
  Item oneOf(const std::vector<Item>& items) {
    if (items.empty()) return {};
    return items.at(bytes_.ConsumeIntegralInRange<std::size_t>(0, items.size() - 1));
  }

  /// What a tester types is refused, or kept as it was typed.
  void typeSomething() {
    const auto address = oneOf<std::string>({email, "a@b", "\xff@'", "4111111111111111@a"});
    const bool isKept = static_cast<bool>(sandbox->signIn(address));
    EXPECT_TRUE((sandbox->signedInEmail() == address) == isKept);
    Fault fault;
    fault.operation = oneOf(allOperations());
    // Those of lists suit no operation's every call.
    fault.kind =
        oneOf(kindsOf(bytes_.ConsumeBool() ? fault.operation : Operation::createUserToken));
    for (auto* number : {&fault.code, &fault.delayMilliseconds, &fault.spreadMilliseconds}) {
      if (bytes_.ConsumeBool()) *number = bytes_.ConsumeIntegral<std::int32_t>();
    }
    if (bytes_.ConsumeBool()) fault.remaining = bytes_.ConsumeIntegralInRange(-1, 2);
    if (bytes_.ConsumeBool()) fault.probability = bytes_.ConsumeIntegral<std::int8_t>();
    if (bytes_.ConsumeBool()) fault.useCase = oneOf<std::string>({"default", "private", "x"});
    if (!sandbox->tester()->arm(fault)) return;
    const auto kept = sandbox->tester()->armed().back();
    fault.number = kept.number;
    EXPECT_TRUE(kept == fault && fault.remaining != 0 && fault.delayMilliseconds >= 0);
    const bool answersOnce = fault.kind != FaultKind::never && fault.kind != FaultKind::stalled &&
                             fault.kind != FaultKind::twice;
    const bool waits = fault.delayMilliseconds + fault.spreadMilliseconds > 0;
    if (!answersOnce || waits) sandbox->tester()->clearFaults();
  }

  void call() {
    auto card = oneOf(testCards()).fields;
    const auto pan = maskedPan(card.pan);
    AddressFields address;
    if (bytes_.ConsumeBool()) address.zip = card.cardHolder = card.pan + " Guest";
    const auto useCase = oneOf<std::string>({"default", "private", "business", "unknown"});
    const auto chosen = oneOf(sandbox->backendCards());
    switch (bytes_.ConsumeIntegralInRange(0, 5)) {
      case 0: {
        const auto [token, error] = createToken(card, useCase);
        if (token) EXPECT_EQ(std::exchange(token_, token).value_or(*token), *token);
        return check(error, pan + useCase);
      }
      case 1:
        return check(addInstrument(card, token_, useCase), pan + useCase);
      case 2:
        listed_ = oneOf(std::get<0>(list(token_, useCase)).value_or(Instruments::value_type()));
        return;
      case 3:
        return check(answerTo<ErrorPtr>([&](auto completion) {
                       provider->removePaymentInstrument(listed_, useCase, token_, completion);
                     }),
                     listed_ ? *listed_->pan() + useCase : "", false);
      case 4:
        return check(std::get<2>(addCard(card, guest, "ins_x", address)), lastFourDigits(pan));
      default:
        return check(std::get<1>(deleteCard(chosen.halvoID, guest)), chosen.lastFourDigits, false);
    }
  }

  /// What an operation did, if it was served. Where the reply was lost, only the stored data says
  /// whether the call was served or rejected.
  void check(const ErrorPtr& error, const std::string& what, bool isNew = true) {
    EXPECT_TRUE(error || sandbox->isReachable());
    const bool isLost = nameOf(error) == "HLVTransportErrorDomain 3" ||
                        nameOf(error) == "HLVTransportErrorDomain 4";
    if (error && !isLost) return;
    auto served = kept_;
    if (isNew) served.insert(what);
    const bool isThere = isNew || served.extract(what);
    EXPECT_TRUE(isThere || isLost);
    if (isLost) EXPECT_TRUE(sandbox->signIn(email));
    if (!isLost || stored() == served) kept_ = served;
  }

  /// What both sides have for the signed-in guest.
  std::multiset<std::string> stored() const {
    std::multiset<std::string> stored;
    for (const auto& card : sandbox->backendCards()) stored.insert(card.lastFourDigits);
    for (const auto& each : sandbox->providerInstruments()) {
      stored.insert(each.maskedPan + each.useCase);
    }
    return stored;
  }

  /// A guest sees both sides as they were answered, and nothing of another guest's.
  void compare() {
    // A failure must not print what should have been masked.
    EXPECT_TRUE(stored() ==
                (sandbox->signedInEmail() == email ? kept_ : std::multiset<std::string>()));
  }

  FuzzedDataProvider bytes_;
  NullableString token_;
  Instrument listed_;
  /// What the two sides show of each number, the provider with its use case.
  std::multiset<std::string> kept_;
};

}  // namespace
}  // namespace hlv::sandbox

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  GTEST_FLAG_SET(break_on_failure, true);
  hlv::sandbox::GuestLife(data, size).TestBody();
  return 0;
}
