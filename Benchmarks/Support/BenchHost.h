// A host and a provider that answer every call with success, when and where a network says.
//
// Threading: as the network.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "Benchmarks/Support/Records.h"
#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Host/Halvo_Authentication/HLVSession.h"
#include "Host/Halvo_Errors/HLVErrorFacade.h"
#include "Host/Host.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"

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

/// What both services do with a call. `Network::answer(RemoteCall, answer)` runs `answer` once, now
/// or later.
template <class Network>
class Service {
 public:
  Service(Network& network, Records& records) : records_(records), network_(network) {}

 protected:
  template <class Completion, class... Results>
  void succeed(RemoteCall call, Completion completion, Results... results) {
    ++records_.calls;
    network_.answer(call, [completion = std::move(completion), results...] {
      completion(results..., nullptr);
    });
  }

  Records& records_;

 private:
  Network& network_;
};

template <class Network>
class Backend final : public HLVSDKAPIManager, private Service<Network> {
 public:
  using Service<Network>::Service;

  void updateCurrentGuestWithRequest(const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>&,
                                     HLVSDKGuestCompletion completion) override {
    this->succeed(RemoteCall::updateGuest, std::move(completion), this->records_.guest);
  }
  void addCreditCardForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                             const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>&,
                             HLVSDKGuestCardCompletion completion) override {
    this->succeed(RemoteCall::addCard, std::move(completion), guest, this->records_.cards[0]);
  }
  void deleteCreditCardWithID(const NullableString&, const std::shared_ptr<HLVSDKGuest>& guest,
                              HLVSDKGuestCompletion completion) override {
    this->succeed(RemoteCall::deleteCard, std::move(completion), guest);
  }
  void updateCreditCard(const NullableString&, const Dictionary&,
                        const std::shared_ptr<HLVSDKGuest>& guest,
                        HLVSDKGuestCardCompletion completion) override {
    this->succeed(RemoteCall::updateCard, std::move(completion), guest, this->records_.cards[0]);
  }
  void fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>&,
                             HLVSDKCreditCardsCompletion completion) override {
    this->succeed(RemoteCall::fetchCards, std::move(completion), std::cref(this->records_.cards));
  }
};

template <class Network>
class Provider final : public PLVInAppClient, private Service<Network> {
 public:
  using Service<Network>::Service;
  using Instrument = std::shared_ptr<PLVCreditCardPaymentInstrument>;

  void registerWithAPIKey(const NullableString&) override {}
  void createUserToken(const NullableString&, const Instrument&, const NullableString&,
                       PLVUserTokenCompletion completion) override {
    this->succeed(RemoteCall::createToken, std::move(completion), "token");
  }
  void addPaymentInstrument(const Instrument&, const NullableString&, const NullableString&,
                            PLVErrorCompletion completion) override {
    this->succeed(RemoteCall::addInstrument, std::move(completion));
  }
  void removePaymentInstrument(const Instrument&, const NullableString&, const NullableString&,
                               PLVErrorCompletion completion) override {
    this->succeed(RemoteCall::removeInstrument, std::move(completion));
  }
  void getPaymentInstrumentsList(const NullableString&, const NullableString& useCase,
                                 PLVPaymentInstrumentsCompletion completion) override {
    const std::size_t position = useCase == "private" ? 0 : useCase == "business" ? 1 : 2;
    constexpr RemoteCall calls[] = {RemoteCall::listPrivate, RemoteCall::listBusiness,
                                    RemoteCall::listDefault};
    this->succeed(calls[position], std::move(completion),
                  std::cref(this->records_.instruments[position]));
  }
};

/// Makes everything that it hands out beforehand.
template <class Network>
class BenchHost final : public Host {
 public:
  BenchHost(Network& network, Records& records)
      : records_(records),
        backend(std::make_shared<Backend<Network>>(network, records)),
        provider(std::make_shared<Provider<Network>>(network, records)) {}

  std::shared_ptr<const HLVSDKConstants> constants() override { return constants_; }
  std::shared_ptr<HLVSDKAPIManager> apiManager() override { return backend; }
  std::shared_ptr<HLVSDKReachability> reachability() override { return reachability_; }
  std::shared_ptr<HLVSDKGuest> currentGuest() override { return records_.guest; }
  NullableString cardBrandFromNumber(const NullableString&) override { return "visa"; }
  std::shared_ptr<HLVSDKUpdateGuestRequestInfo> makeUpdateGuestRequestInfo() override {
    return update_;
  }
  void handleAssertWithMessage(const NullableString&) override {}
  void handleParameterAssert(const NullableString&, const NullableString&) override {}
  std::shared_ptr<HLVSDKLogger> remoteLogger() override { return logger_; }
  std::shared_ptr<HLVSDKLogger> consoleLogger() override { return logger_; }
  std::shared_ptr<HLVSDKAddCreditCardRequestInfo::Body> makeAddCreditCardRequestBody(
      const std::shared_ptr<HLVSDKPaymentInstrument>&,
      const std::shared_ptr<HLVSDKPaymentBillingAddress>&) override {
    return body_;
  }
  std::shared_ptr<HLVSession> activeSession() override { return nullptr; }
  std::shared_ptr<HLVErrorFacade> makeErrorFacade() override { return nullptr; }
  std::shared_ptr<PLVInAppClient> inAppClient() override { return provider; }
  std::shared_ptr<PLVCreditCardPaymentInstrument> makeCreditCardPaymentInstrument(
      const NullableString&, const NullableString&, const NullableString&, const NullableString&,
      const NullableString&) override {
    return instrument_;
  }

 private:
  struct Reachable final : HLVSDKReachability {
    std::int64_t currentState() const override { return 1; }
  };
  struct SilentLogger final : HLVSDKLogger {
    void logWithLevel(int, const char*, int, const char*, const char*,
                      const std::vector<HLVSDKLogArgument>&) override {}
  };
  struct EmptyBody final : HLVSDKAddCreditCardRequestInfo::Body {
    void setProvider(std::int64_t) override {}
    Dictionary JSONRepresentation() const override { return {}; }
    bool isValid(ErrorPtr*) const override { return true; }
  };
  static HLVSDKConstants texts() {
    HLVSDKConstants texts;
    texts.useCasePrivate = "private";
    texts.useCaseBusiness = "business";
    texts.useCaseDefault = "default";
    texts.businessAddressJSONKeyes = {"street", "city", "country", "zip", "business"};
    texts.authorizationStatusNotification = "authorization";
    texts.reachabilityStateNotification = "reachability";
    return texts;
  }

  Records& records_;
  const std::shared_ptr<const HLVSDKConstants> constants_ =
      std::make_shared<HLVSDKConstants>(texts());
  const std::shared_ptr<HLVSDKReachability> reachability_ = std::make_shared<Reachable>();
  const std::shared_ptr<HLVSDKLogger> logger_ = std::make_shared<SilentLogger>();
  const std::shared_ptr<EmptyBody> body_ = std::make_shared<EmptyBody>();
  const std::shared_ptr<testing::FakeUpdateRequest> update_ =
      std::make_shared<testing::FakeUpdateRequest>();
  const std::shared_ptr<testing::FakeInstrument> instrument_ =
      std::make_shared<testing::FakeInstrument>();

 public:
  const std::shared_ptr<Backend<Network>> backend;
  const std::shared_ptr<Provider<Network>> provider;
};

}  // namespace hlv::bench
