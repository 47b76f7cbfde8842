#include "Tests/Stress/StressHost.h"

#include <random>
#include <string>
#include <tuple>
#include <utility>

namespace hlv::testing {
namespace {

/// An app's own completion, which is called once, since no kit stands before it.
constexpr std::uint32_t callOfTheApp = 4;

/// The operation that a call takes part in.
std::uint32_t numberOf(const CallOf& of) {
  const auto text = of.guest ? (*of.guest)->email() : *of.user;
  return static_cast<std::uint32_t>(std::stoul(text.value_or("0")));
}

/// Answers one call as its plan says: with these results, or with an error in their place.
template <class Completion, class... Results>
void answer(const StressHost::Setting& setting, std::uint32_t call, std::uint32_t operation,
            const Completion& completion, const std::tuple<Results...>& results) {
  std::minstd_rand plan(setting.seed * 7919U + operation * 31U + call);
  plan.discard(3);
  const auto oneIn = [&](std::uint32_t chances) { return plan() % chances == 0; };
  if (oneIn(25)) return setting.unanswered(operation);
  const std::function<void()> say = [=, fails = oneIn(8)] {
    if (fails) return completion(Results()..., makeError("refused"));
    std::apply(completion, std::tuple_cat(results, std::tuple(ErrorPtr())));
  };
  if (oneIn(4)) {
    say();
  } else {
    setting.threads->post(say);
  }
  if (call != callOfTheApp && oneIn(5)) setting.threads->post(say);
}

}  // namespace

StressHost::StressHost(const Setting& setting) : ScriptedHost(Recording::off) {
  guest = guestOf(0, true);
  requestBody = nullptr;  // What a request was made of is kept for one thread.
  // Each reply brings objects of its own, and the guest that it was asked for.
  const auto plan = [setting](auto& calls, std::uint32_t call, auto results) {
    calls.answerInside = [=](const auto& completion, const CallOf& of) {
      const auto useCase = call == 8 ? static_cast<std::uint32_t>(length(*of.useCase)) : 0;
      answer(setting, call + useCase, numberOf(of), completion, results(of));
    };
  };
  const auto withGuest = [](const CallOf& of) { return std::tuple(*of.guest); };
  const auto withCard = [](const CallOf& of) {
    return std::tuple(*of.guest, std::make_shared<FakeStoredCard>());
  };
  const auto withNothing = [](const CallOf&) { return std::tuple<>(); };
  plan(backend->guestUpdates, 1,
       [](const CallOf&) { return std::tuple(std::shared_ptr<HLVSDKGuest>()); });
  plan(backend->cardAdds, 2, withCard);
  plan(backend->deletions, 3, withGuest);
  plan(backend->cardUpdates, callOfTheApp, withCard);
  plan(backend->cardFetches, 5, [](const CallOf&) { return std::tuple(List<HLVSDKCreditCard>()); });
  plan(provider->tokens, 6, [](const CallOf& of) { return std::tuple(*of.user); });
  plan(provider->adds, 7, withNothing);
  plan(provider->lists, 8, [](const CallOf&) {
    return std::tuple(List<PLVCreditCardPaymentInstrument>{std::make_shared<FakeInstrument>()});
  });
  plan(provider->removals, 20, withNothing);
}

std::shared_ptr<FakeGuest> StressHost::guestOf(std::size_t operation, bool hasToken) {
  auto guest = std::make_shared<FakeGuest>();
  guest->emailText = std::to_string(operation);
  if (hasToken) guest->token = guest->emailText;
  guest->cards = List<HLVSDKCreditCard>{std::make_shared<FakeStoredCard>()};
  return guest;
}

}  // namespace hlv::testing
