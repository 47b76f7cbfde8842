// A host and a provider that do nothing until the test answers, and can record what they get.
//
// Threading: one thread.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"
#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"
#include "Host/Halvo_Authentication/HLVSession.h"
#include "Host/Host.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Models/HLVSDKAddPaylevenCreditCardRequestInfo.h"
#include "Tests/Support/FakeErrors.h"
#include "Tests/Support/FakeRecords.h"
#include "Tests/Support/Held.h"
#include "Values/Send.h"

namespace hlv::testing {

/// What happened, one line each, in order.
using Trace = std::vector<std::string>;

inline std::string shownText(const NullableString& text) { return text ? *text : "nil"; }

inline std::string shownText(const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument) {
  return shownText(send(instrument, &PLVCreditCardPaymentInstrument::identifier));
}

inline std::string shownText(const std::shared_ptr<HLVSDKGuest>& guest) {
  return shownText(send(guest, &HLVSDKGuest::email));
}

inline std::string shownText(const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request) {
  const auto fake = std::dynamic_pointer_cast<FakeUpdateRequest>(request);
  return fake ? shownText(fake->token) : "no request";
}

inline std::string shownText(const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& request) {
  const auto ofKit = std::dynamic_pointer_cast<HLVSDKAddPaylevenCreditCardRequestInfo>(request);
  return ofKit ? shownText(ofKit->paylevenToken()) : "no request";
}

/// Nothing is made of the parts when nobody records them.
template <class... Parts>
void record(Trace* trace, const Parts&... parts) {
  if (trace) trace->push_back((std::string() + ... + shownText(parts)));
}

class TracingLogger final : public HLVSDKLogger {
 public:
  TracingLogger(Trace* trace, std::string name) : trace_(trace), name_(std::move(name)) {}

  void logWithLevel(int level, const char* path, int line, const char* function, const char* format,
                    const std::vector<HLVSDKLogArgument>& arguments) override {
    if (!trace_) return;
    std::string entry = name_ + " " + std::to_string(level) + " \"" + format + "\"";
    for (const auto& argument : arguments) {
      const auto* text = std::get_if<NullableString>(&argument);
      entry += " <" + (text ? shownText(*text) : madeAs(std::get<ErrorPtr>(argument))) + ">";
    }
    trace_->push_back(entry + " at " + function);
    if (line <= 0 || std::string(path).find("Public/Managers/") == std::string::npos) {
      trace_->push_back("a log line without its call site");
    }
  }

 private:
  Trace* const trace_;
  const std::string name_;
};

class ScriptedBackend final : public HLVSDKAPIManager {
 public:
  explicit ScriptedBackend(Trace* trace) : trace_(trace) {}

  Held<HLVSDKGuestCompletion> guestUpdates, deletions;
  Held<HLVSDKGuestCardCompletion> cardAdds, cardUpdates;
  Held<HLVSDKCreditCardsCompletion> cardFetches;
  /// What the last add-card and update-card calls carried, if there is a trace.
  std::shared_ptr<HLVSDKAddCreditCardRequestInfo> lastAddRequest;
  Dictionary lastAddress;

  void updateCurrentGuestWithRequest(const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
                                     HLVSDKGuestCompletion completion) override {
    record(trace_, "backend update guest token=", request);
    const auto* fake = dynamic_cast<const FakeUpdateRequest*>(request.get());
    guestUpdates.hold(std::move(completion),
                      {.service = Service::updateGuest, .user = fake ? &fake->token : nullptr});
  }
  void addCreditCardForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                             const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& requestInfo,
                             HLVSDKGuestCardCompletion completion) override {
    record(trace_, "backend add card for ", guest, " token=", requestInfo);
    if (trace_) lastAddRequest = requestInfo;
    cardAdds.hold(std::move(completion), {.service = Service::addCard, .guest = &guest});
  }
  void deleteCreditCardWithID(const NullableString& ID, const std::shared_ptr<HLVSDKGuest>& guest,
                              HLVSDKGuestCompletion completion) override {
    record(trace_, "backend delete ", ID, " of ", guest);
    deletions.hold(std::move(completion), {.service = Service::deleteCard, .guest = &guest});
  }
  void updateCreditCard(const NullableString& ID, const Dictionary& address,
                        const std::shared_ptr<HLVSDKGuest>& guest,
                        HLVSDKGuestCardCompletion completion) override {
    record(trace_, "backend update ", ID, " of ", guest);
    if (trace_) lastAddress = address;
    cardUpdates.hold(std::move(completion), {.service = Service::updateCard, .guest = &guest});
  }
  void fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                             HLVSDKCreditCardsCompletion completion) override {
    record(trace_, "backend fetch cards of ", guest);
    cardFetches.hold(std::move(completion), {.service = Service::fetchCards, .guest = &guest});
  }

 private:
  Trace* const trace_;
};

class ScriptedProvider final : public PLVInAppClient {
 public:
  explicit ScriptedProvider(Trace* trace) : trace_(trace) {}

  Held<PLVUserTokenCompletion> tokens;
  Held<PLVErrorCompletion> adds, removals;
  Held<PLVPaymentInstrumentsCompletion> lists;

  void registerWithAPIKey(const NullableString& key) override {
    record(trace_, "provider register '", key, "'");
  }
  void createUserToken(const NullableString& email,
                       const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                       const NullableString& useCase, PLVUserTokenCompletion completion) override {
    record(trace_, "provider create token for ", email, " with ", instrument, " use case ",
           useCase);
    tokens.hold(std::move(completion), {.service = Service::createToken, .user = &email});
  }
  void addPaymentInstrument(const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                            const NullableString& userToken, const NullableString& useCase,
                            PLVErrorCompletion completion) override {
    record(trace_, "provider add ", instrument, " under ", userToken, " use case ", useCase);
    adds.hold(std::move(completion), {.service = Service::addInstrument, .user = &userToken});
  }
  void getPaymentInstrumentsList(const NullableString& userToken, const NullableString& useCase,
                                 PLVPaymentInstrumentsCompletion completion) override {
    record(trace_, "provider list ", userToken, " use case ", useCase);
    const auto list = useCase == "private"    ? Service::privateList
                      : useCase == "business" ? Service::businessList
                                              : Service::defaultList;
    lists.hold(std::move(completion), {.service = list, .user = &userToken});
  }
  void removePaymentInstrument(const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
                               const NullableString& useCase, const NullableString& userToken,
                               PLVErrorCompletion completion) override {
    record(trace_, "provider remove ", instrument, " from ", useCase, " of ", userToken);
    removals.hold(std::move(completion),
                  {.service = Service::removeInstrument, .user = &userToken});
  }

 private:
  Trace* const trace_;
};

struct ScriptedReachability final : HLVSDKReachability {
  std::int64_t state = 1;
  /// Where the question is written down, if anywhere.
  Trace* trace = nullptr;
  std::int64_t currentState() const override {
    if (trace) trace->push_back("network asked");
    return state;
  }
};

struct ScriptedSession final : HLVSession {
  bool authorized = true;
  bool isAuthorized() const override { return authorized; }
};

enum class Recording { on, off };

class ScriptedHost : public Host {
 private:
  Trace* const trace_;

 public:
  Trace trace;
  const std::shared_ptr<ScriptedBackend> backend = std::make_shared<ScriptedBackend>(trace_);
  const std::shared_ptr<ScriptedProvider> provider = std::make_shared<ScriptedProvider>(trace_);
  const std::shared_ptr<ScriptedReachability> network = std::make_shared<ScriptedReachability>();
  std::shared_ptr<ScriptedSession> session = std::make_shared<ScriptedSession>();
  std::shared_ptr<HLVSDKGuest> guest;
  /// The host's add-card body and its own verdict; no body makes the base initialiser fail.
  std::shared_ptr<Dictionary> requestBody = std::make_shared<Dictionary>(Dictionary{
      {"credit_card", Dictionary{{"brand", "visa"}, {"last", "1111"}}}, {"provider", 0}});
  ErrorPtr requestError;
  /// What the last request was made of; only to compare with.
  const void* requestedCard = nullptr;
  const void* requestedAddress = nullptr;
  /// The provider value that the last request was marked with.
  std::int64_t requestProvider = -1;
  const std::shared_ptr<HLVSDKConstants> texts = std::make_shared<HLVSDKConstants>(
      HLVSDKConstants{.useCaseDefault = "default",
                      .useCasePrivate = "private",
                      .useCaseBusiness = "business",
                      .businessAddressJSONKeyes = {"k0", "k1", "k2", "k3", "k4"},
                      .urlErrorDomain = "URL",
                      .paymentErrorDomain = "Payment",
                      .authorizationStatusNotification = "authorization",
                      .isAuthorizedKey = "isAuthorized",
                      .reachabilityStateNotification = "reachability",
                      .reachabilityStateKey = "state",
                      .reachabilityPreviousStateKey = "previous"});

  explicit ScriptedHost(Recording recording = Recording::on)
      : trace_(recording == Recording::on ? &trace : nullptr) {}

  /// Visits what holds the calls to the services.
  template <class Visit>
  void forEachService(const Visit& visit) {
    const auto visitAll = [&](auto&... held) { (visit(held), ...); };
    visitAll(backend->guestUpdates, backend->deletions, backend->cardAdds, backend->cardUpdates,
             backend->cardFetches, provider->tokens, provider->adds, provider->removals,
             provider->lists);
  }
  /// Frees every callback that still waits.
  void dropEverything() {
    forEachService([](auto& held) { held.drop(); });
  }
  /// The lines since the last call, joined.
  std::string takeTrace() {
    std::string joined;
    for (const auto& line : std::exchange(trace, {})) joined += (joined.empty() ? "" : "\n") + line;
    return joined;
  }

  std::shared_ptr<const HLVSDKConstants> constants() override { return texts; }
  std::shared_ptr<HLVSDKAPIManager> apiManager() override { return backend; }
  std::shared_ptr<HLVSDKReachability> reachability() override { return network; }
  std::shared_ptr<HLVSDKGuest> currentGuest() override {
    record(trace_, "host current guest");
    return guest;
  }
  NullableString cardBrandFromNumber(const NullableString& number) override {
    if (!number) return std::nullopt;
    return number->starts_with("5") ? "mastercard" : "visa";
  }
  std::shared_ptr<HLVSDKUpdateGuestRequestInfo> makeUpdateGuestRequestInfo() override {
    return std::make_shared<FakeUpdateRequest>();
  }
  void handleAssertWithMessage(const NullableString& message) override {
    record(trace_, "assert \"", message, "\"");
  }
  void handleParameterAssert(const NullableString& parameter,
                             const NullableString& message) override {
    record(trace_, "assert parameter ", parameter, ": ", message);
  }
  std::shared_ptr<HLVSDKLogger> remoteLogger() override { return remoteLogger_; }
  std::shared_ptr<HLVSDKLogger> consoleLogger() override { return consoleLogger_; }
  std::shared_ptr<HLVSDKAddCreditCardRequestBody> makeAddCreditCardRequestBody(
      const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
      const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) override {
    if (!requestBody) return nullptr;
    requestedCard = instrument.get();
    requestedAddress = address.get();
    return body_;
  }
  std::shared_ptr<HLVSession> activeSession() override { return session; }
  std::shared_ptr<HLVErrorFacade> makeErrorFacade() override {
    return std::make_shared<FakeErrorFacade>(trace_);
  }
  std::shared_ptr<PLVInAppClient> inAppClient() override { return provider; }
  std::shared_ptr<PLVCreditCardPaymentInstrument> makeCreditCardPaymentInstrument(
      const NullableString& pan, const NullableString& expiryMonth,
      const NullableString& expiryYear, const NullableString& cvv,
      const NullableString& cardHolder) override {
    auto instrument = std::make_shared<FakeInstrument>();
    // Named by what it was made of, masked.
    instrument->id = "new[" + (pan ? ".." + pan->substr(pan->size() - 4) : "nil") + " " +
                     shownText(expiryMonth) + "/" + shownText(expiryYear) +
                     (cvv ? " cvv of " + std::to_string(cvv->size()) : " nil") + " " +
                     shownText(cardHolder) + "]";
    return instrument;
  }

 private:
  struct RequestBody final : HLVSDKAddCreditCardRequestBody {
    explicit RequestBody(ScriptedHost* scripted) : host(scripted) {}
    void setProvider(std::int64_t number) override { host->requestProvider = number; }
    Dictionary JSONRepresentation() const override { return *host->requestBody; }
    bool isValid(ErrorPtr* error) const override {
      if (host->requestError && error) *error = host->requestError;
      return host->requestError == nullptr;
    }
    ScriptedHost* const host;
  };

  const std::shared_ptr<HLVSDKLogger> remoteLogger_ =
      std::make_shared<TracingLogger>(trace_, "remote");
  const std::shared_ptr<HLVSDKLogger> consoleLogger_ =
      std::make_shared<TracingLogger>(trace_, "console");
  const std::shared_ptr<HLVSDKAddCreditCardRequestBody> body_ = std::make_shared<RequestBody>(this);
};

}  // namespace hlv::testing
