#include "Tests/Stress/StressHost.h"

#include <random>
#include <string>
#include <utility>

#include "Values/Send.h"

namespace hlv::testing {
namespace {

/// An app's own completion, which is called once, since no kit stands before it.
constexpr std::uint32_t callOfTheApp = 4;

/// Answers one call as its plan says.
class Service {
 public:
  explicit Service(StressHost::Setting setting) : setting_(std::move(setting)) {}

 protected:
  /// With these results, or with an error in their place.
  template <class Completion, class... Results>
  void answer(const NullableString& operation, std::uint32_t call, const Completion& completion,
              const Results&... results) const {
    const auto number = static_cast<std::uint32_t>(std::stoul(operation.value_or("0")));
    std::minstd_rand plan(setting_.seed * 7919U + number * 31U + call);
    plan.discard(3);
    const auto oneIn = [&](std::uint32_t chances) { return plan() % chances == 0; };
    if (oneIn(25)) return setting_.unanswered(number);
    const std::function<void()> say = [=, fails = oneIn(8)] {
      fails ? completion(Results()..., makeError("refused")) : completion(results..., nullptr);
    };
    if (oneIn(4)) {
      say();
    } else {
      setting_.threads->post(say);
    }
    if (call != callOfTheApp && oneIn(5)) setting_.threads->post(say);
  }

  static NullableString numberOf(const std::shared_ptr<HLVSDKGuest>& guest) {
    return send(guest, &HLVSDKGuest::email);
  }

 private:
  const StressHost::Setting setting_;
};

class StressBackend final : public HLVSDKAPIManager, private Service {
 public:
  using Service::Service;

  void updateCurrentGuestWithRequest(const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
                                     HLVSDKGuestCompletion completion) override {
    answer(std::static_pointer_cast<FakeUpdateRequest>(request)->token, 1, completion,
           std::shared_ptr<HLVSDKGuest>());
  }
  void addCreditCardForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                             const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>&,
                             HLVSDKGuestCardCompletion completion) override {
    answer(numberOf(guest), 2, completion, guest, std::make_shared<FakeStoredCard>());
  }
  void deleteCreditCardWithID(const NullableString&, const std::shared_ptr<HLVSDKGuest>& guest,
                              HLVSDKGuestCompletion completion) override {
    answer(numberOf(guest), 3, completion, guest);
  }
  void updateCreditCard(const NullableString&, const Dictionary&,
                        const std::shared_ptr<HLVSDKGuest>& guest,
                        HLVSDKGuestCardCompletion completion) override {
    answer(numberOf(guest), callOfTheApp, completion, guest, std::make_shared<FakeStoredCard>());
  }
  void fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                             HLVSDKCreditCardsCompletion completion) override {
    answer(numberOf(guest), 5, completion, List<HLVSDKCreditCard>{});
  }
};

class StressProvider final : public PLVInAppClient, private Service {
 public:
  using Service::Service;
  using Instrument = std::shared_ptr<PLVCreditCardPaymentInstrument>;

  void registerWithAPIKey(const NullableString&) override {}
  void createUserToken(const NullableString& email, const Instrument&, const NullableString&,
                       PLVUserTokenCompletion completion) override {
    answer(email, 6, completion, email);
  }
  void addPaymentInstrument(const Instrument&, const NullableString& userToken,
                            const NullableString&, PLVErrorCompletion completion) override {
    answer(userToken, 7, completion);
  }
  void getPaymentInstrumentsList(const NullableString& userToken, const NullableString& useCase,
                                 PLVPaymentInstrumentsCompletion completion) override {
    answer(userToken, 8 + static_cast<std::uint32_t>(length(useCase)), completion,
           List<PLVCreditCardPaymentInstrument>{std::make_shared<FakeInstrument>()});
  }
  void removePaymentInstrument(const Instrument&, const NullableString&,
                               const NullableString& userToken,
                               PLVErrorCompletion completion) override {
    answer(userToken, 20, completion);
  }
};

}  // namespace

StressHost::StressHost(const Setting& setting)
    : ScriptedHost(Recording::off),
      stressBackend_(std::make_shared<StressBackend>(setting)),
      stressProvider_(std::make_shared<StressProvider>(setting)) {
  guest = guestOf(0, true);
  requestBody = nullptr;  // What a request was made of is kept for one thread.
}

std::shared_ptr<FakeGuest> StressHost::guestOf(std::size_t operation, bool hasToken) {
  auto guest = std::make_shared<FakeGuest>();
  guest->emailText = std::to_string(operation);
  if (hasToken) guest->token = guest->emailText;
  guest->cards = List<HLVSDKCreditCard>{std::make_shared<FakeStoredCard>()};
  return guest;
}

}  // namespace hlv::testing
