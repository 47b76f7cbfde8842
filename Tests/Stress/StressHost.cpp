#include "Tests/Stress/StressHost.h"

#include <random>
#include <string>
#include <utility>

#include "Values/Send.h"

namespace hlv::testing {
namespace {

/// Answers one call as its plan says.
class Service {
 public:
  explicit Service(StressHost::Setting setting) : setting_(std::move(setting)) {}

  /// `good` and `bad` call the completion that they are given. An app's own completion is answered
  /// once, since no kit stands before it.
  template <class Completion, class Good, class Bad>
  void answer(const NullableString& operation, std::uint32_t call, const Completion& completion,
              Good good, Bad bad, bool isOfTheApp = false) const {
    const auto number = static_cast<std::uint32_t>(std::stoul(operation.value_or("0")));
    std::minstd_rand plan(setting_.seed * 7919U + number * 31U + call);
    plan.discard(3);
    const auto oneIn = [&](std::uint32_t chances) { return plan() % chances == 0; };
    if (oneIn(25)) return setting_.unanswered(number);
    const std::function<void()> say = [=, fails = oneIn(8)] {
      fails ? bad(completion) : good(completion);
    };
    if (oneIn(4)) {
      say();
    } else {
      setting_.threads->post(say);
    }
    if (!isOfTheApp && oneIn(5)) setting_.threads->post(say);
  }

 private:
  const StressHost::Setting setting_;
};

NullableString numberOf(const std::shared_ptr<HLVSDKGuest>& guest) {
  return send(guest, &HLVSDKGuest::email);
}

class StressBackend final : public HLVSDKAPIManager {
 public:
  explicit StressBackend(const StressHost::Setting& setting) : service_(setting) {}

  void updateCurrentGuestWithRequest(const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
                                     HLVSDKGuestCompletion completion) override {
    answerGuest(std::static_pointer_cast<FakeUpdateRequest>(request)->token, 1, nullptr,
                completion);
  }
  void addCreditCardForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                             const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>&,
                             HLVSDKGuestCardCompletion completion) override {
    answerCard(guest, 2, completion, false);
  }
  void deleteCreditCardWithID(const NullableString&, const std::shared_ptr<HLVSDKGuest>& guest,
                              HLVSDKGuestCompletion completion) override {
    answerGuest(numberOf(guest), 3, guest, completion);
  }
  void updateCreditCard(const NullableString&, const Dictionary&,
                        const std::shared_ptr<HLVSDKGuest>& guest,
                        HLVSDKGuestCardCompletion completion) override {
    answerCard(guest, 4, completion, true);
  }
  void fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                             HLVSDKCreditCardsCompletion completion) override {
    service_.answer(
        numberOf(guest), 5, completion,
        [](const auto& complete) { complete(List<HLVSDKCreditCard>{}, nullptr); },
        [](const auto& complete) { complete(std::nullopt, makeError("fetch")); });
  }

 private:
  void answerGuest(const NullableString& operation, std::uint32_t call,
                   const std::shared_ptr<HLVSDKGuest>& guest,
                   const HLVSDKGuestCompletion& completion) const {
    service_.answer(
        operation, call, completion, [guest](const auto& complete) { complete(guest, nullptr); },
        [](const auto& complete) { complete(nullptr, makeError("guest")); });
  }
  void answerCard(const std::shared_ptr<HLVSDKGuest>& guest, std::uint32_t call,
                  const HLVSDKGuestCardCompletion& completion, bool isOfTheApp) const {
    service_.answer(
        numberOf(guest), call, completion,
        [guest](const auto& complete) {
          complete(guest, std::make_shared<FakeStoredCard>(), nullptr);
        },
        [](const auto& complete) { complete(nullptr, nullptr, makeError("card")); }, isOfTheApp);
  }

  const Service service_;
};

class StressProvider final : public PLVInAppClient {
 public:
  explicit StressProvider(const StressHost::Setting& setting) : service_(setting) {}

  void registerWithAPIKey(const NullableString&) override {}
  void createUserToken(const NullableString& email,
                       const std::shared_ptr<PLVCreditCardPaymentInstrument>&,
                       const NullableString&, PLVUserTokenCompletion completion) override {
    service_.answer(
        email, 6, completion, [email](const auto& complete) { complete(email, nullptr); },
        [](const auto& complete) { complete(std::nullopt, makeError("token")); });
  }
  void addPaymentInstrument(const std::shared_ptr<PLVCreditCardPaymentInstrument>&,
                            const NullableString& userToken, const NullableString&,
                            PLVErrorCompletion completion) override {
    answerError(userToken, 7, completion);
  }
  void getPaymentInstrumentsList(const NullableString& userToken, const NullableString& useCase,
                                 PLVPaymentInstrumentsCompletion completion) override {
    service_.answer(
        userToken, 8 + static_cast<std::uint32_t>(length(useCase)), completion,
        [](const auto& complete) {
          complete(List<PLVCreditCardPaymentInstrument>{std::make_shared<FakeInstrument>()},
                   nullptr);
        },
        [](const auto& complete) { complete(std::nullopt, makeError("list")); });
  }
  void removePaymentInstrument(const std::shared_ptr<PLVCreditCardPaymentInstrument>&,
                               const NullableString&, const NullableString& userToken,
                               PLVErrorCompletion completion) override {
    answerError(userToken, 20, completion);
  }

 private:
  void answerError(const NullableString& operation, std::uint32_t call,
                   const PLVErrorCompletion& completion) const {
    service_.answer(
        operation, call, completion, [](const auto& complete) { complete(nullptr); },
        [](const auto& complete) { complete(makeError("provider")); });
  }

  const Service service_;
};

}  // namespace

StressHost::StressHost(const Setting& setting)
    : stressBackend_(std::make_shared<StressBackend>(setting)),
      stressProvider_(std::make_shared<StressProvider>(setting)) {
  guest = guestOf(0, true);
}

std::shared_ptr<FakeGuest> StressHost::guestOf(std::size_t operation, bool hasToken) {
  auto guest = std::make_shared<FakeGuest>();
  guest->emailText = std::to_string(operation);
  if (hasToken) guest->token = guest->emailText;
  guest->cards = List<HLVSDKCreditCard>{std::make_shared<FakeStoredCard>()};
  return guest;
}

}  // namespace hlv::testing
