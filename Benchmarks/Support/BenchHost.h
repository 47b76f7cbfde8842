// The scripted host without a trace, whose services answer every call with success, when and where
// a network says. It makes what it hands out beforehand, so that what is counted is the kit's.
//
// Threading: as the network.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>

#include "Benchmarks/Support/Records.h"
#include "Tests/Support/ScriptedHost.h"

namespace hlv::bench {

/// The calls that leave the process.
enum class RemoteCall {
  createToken,
  addInstrument,
  removeInstrument,
  listPrivate,
  listBusiness,
  listDefault,
  updateGuest,
  addCard,
  deleteCard,
  updateCard,
  fetchCards,
};

/// Answers inside the call.
struct InstantNetwork {
  template <class Answer>
  void answer(RemoteCall, const Answer& answer) {
    answer();
  }
};

class BenchHost final : public testing::ScriptedHost {
 public:
  /// `Network::answer(RemoteCall, answer)` runs `answer` once, now or later.
  template <class Network>
  BenchHost(Network& remote, Records& records) : ScriptedHost(testing::Recording::off) {
    guest = records.guest;
    const auto succeed = [&](RemoteCall call, auto callback, auto... results) {
      ++records.calls;
      remote.answer(
          call, [callback = std::move(callback), results...] { callback(results..., nullptr); });
    };
    const auto answer = [&](auto& calls, RemoteCall call, auto... results) {
      calls.answerInside = [=](auto callback, const testing::CallOf&) {
        succeed(call, std::move(callback), results...);
      };
    };
    const auto& card = records.cards[0];
    answer(backend->guestUpdates, RemoteCall::updateGuest, guest);
    answer(backend->cardAdds, RemoteCall::addCard, guest, card);
    answer(backend->deletions, RemoteCall::deleteCard, guest);
    answer(backend->cardUpdates, RemoteCall::updateCard, guest, card);
    answer(backend->cardFetches, RemoteCall::fetchCards, std::cref(records.cards));
    answer(provider->tokens, RemoteCall::createToken, "token");
    answer(provider->adds, RemoteCall::addInstrument);
    answer(provider->removals, RemoteCall::removeInstrument);
    provider->lists.answerInside = [&records, succeed](auto callback, const testing::CallOf& of) {
      const auto& useCase = *of.useCase;
      const std::size_t position = useCase == "private" ? 0 : useCase == "business" ? 1 : 2;
      constexpr RemoteCall calls[] = {RemoteCall::listPrivate, RemoteCall::listBusiness,
                                      RemoteCall::listDefault};
      succeed(calls[position], std::move(callback), std::cref(records.instruments[position]));
    };
  }

  std::shared_ptr<HLVSDKUpdateGuestRequestInfo> makeUpdateGuestRequestInfo() override {
    return update_;
  }
  std::shared_ptr<PLVCreditCardPaymentInstrument> makeCreditCardPaymentInstrument(
      const NullableString&, const NullableString&, const NullableString&, const NullableString&,
      const NullableString&) override {
    return instrument_;
  }

 private:
  const std::shared_ptr<testing::FakeUpdateRequest> update_ =
      std::make_shared<testing::FakeUpdateRequest>();
  const std::shared_ptr<testing::FakeInstrument> instrument_ =
      std::make_shared<testing::FakeInstrument>();
};

}  // namespace hlv::bench
