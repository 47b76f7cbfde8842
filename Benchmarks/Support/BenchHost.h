// The scripted host without a trace, whose services answer every call with success, when and where
// a network says. It makes what it hands out beforehand, so that what is counted is the kit's.
//
// Threading: as the network.
#pragma once

#include <memory>
#include <utility>

#include "Benchmarks/Support/Records.h"
#include "Tests/Support/ScriptedHost.h"

namespace hlv::bench {

/// Answers inside the call.
struct InstantNetwork {
  template <class Answer>
  void answer(testing::Service, const Answer& answer) {
    answer();
  }
};

class BenchHost final : public testing::ScriptedHost {
 public:
  /// `Network::answer(Service, answer)` runs `answer` once, now or later.
  template <class Network>
  BenchHost(Network& remote, Records& records) : ScriptedHost(testing::Recording::off) {
    guest = records.guest;
    forEachService([&](auto& calls) {
      calls.answerInside = [&](auto callback, const testing::CallOf& of) {
        ++records.calls;
        remote.answer(of.service,
                      [callback = std::move(callback), &brought = records.answerOf(of.service)] {
                        testing::complete(callback, brought, nullptr);
                      });
      };
    });
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
