#include "Tests/Support/ScriptedHost.h"

#include <utility>

#include "Models/HLVSDKAddPaylevenCreditCardRequestInfo.h"
#include "Values/Send.h"

namespace hlv::testing {
namespace {

std::string shownText(const NullableString& text) { return text ? *text : "nil"; }

std::string shownText(const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument) {
  return shownText(send(instrument, &PLVCreditCardPaymentInstrument::identifier));
}

std::string shownText(const std::shared_ptr<HLVSDKGuest>& guest) {
  return shownText(send(guest, &HLVSDKGuest::email));
}

std::string shownText(const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request) {
  const auto fake = std::dynamic_pointer_cast<FakeUpdateRequest>(request);
  return fake ? shownText(fake->token) : "no request";
}

std::string shownText(const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& request) {
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

class RequestBody final : public HLVSDKAddCreditCardRequestInfo::Body {
 public:
  explicit RequestBody(ScriptedHost* host) : host_(host) {}
  void setProvider(std::int64_t provider) override { host_->requestProvider = provider; }
  Dictionary JSONRepresentation() const override { return *host_->requestBody; }
  bool isValid(ErrorPtr* error) const override {
    if (host_->requestError && error) *error = host_->requestError;
    return host_->requestError == nullptr;
  }

 private:
  ScriptedHost* const host_;
};

}  // namespace

void ScriptedBackend::updateCurrentGuestWithRequest(
    const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
    HLVSDKGuestCompletion completion) {
  record(trace_, "backend update guest token=", request);
  const auto* fake = dynamic_cast<const FakeUpdateRequest*>(request.get());
  guestUpdates.hold(std::move(completion), {.user = fake ? &fake->token : nullptr});
}

void ScriptedBackend::addCreditCardForGuest(
    const std::shared_ptr<HLVSDKGuest>& guest,
    const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& requestInfo,
    HLVSDKGuestCardCompletion completion) {
  record(trace_, "backend add card for ", guest, " token=", requestInfo);
  if (trace_) lastAddRequest = requestInfo;
  cardAdds.hold(std::move(completion), {.guest = &guest});
}

void ScriptedBackend::deleteCreditCardWithID(const NullableString& ID,
                                             const std::shared_ptr<HLVSDKGuest>& guest,
                                             HLVSDKGuestCompletion completion) {
  record(trace_, "backend delete ", ID, " of ", guest);
  deletions.hold(std::move(completion), {.guest = &guest});
}

void ScriptedBackend::updateCreditCard(const NullableString& ID, const Dictionary& address,
                                       const std::shared_ptr<HLVSDKGuest>& guest,
                                       HLVSDKGuestCardCompletion completion) {
  record(trace_, "backend update ", ID, " of ", guest);
  if (trace_) lastAddress = address;
  cardUpdates.hold(std::move(completion), {.guest = &guest});
}

void ScriptedBackend::fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                                            HLVSDKCreditCardsCompletion completion) {
  record(trace_, "backend fetch cards of ", guest);
  cardFetches.hold(std::move(completion), {.guest = &guest});
}

void ScriptedProvider::registerWithAPIKey(const NullableString& key) {
  record(trace_, "provider register '", key, "'");
}

void ScriptedProvider::createUserToken(
    const NullableString& email, const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
    const NullableString& useCase, PLVUserTokenCompletion completion) {
  record(trace_, "provider create token for ", email, " with ", instrument, " use case ", useCase);
  tokens.hold(std::move(completion), {.user = &email, .useCase = &useCase});
}

void ScriptedProvider::addPaymentInstrument(
    const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
    const NullableString& userToken, const NullableString& useCase, PLVErrorCompletion completion) {
  record(trace_, "provider add ", instrument, " under ", userToken, " use case ", useCase);
  adds.hold(std::move(completion), {.user = &userToken, .useCase = &useCase});
}

void ScriptedProvider::getPaymentInstrumentsList(const NullableString& userToken,
                                                 const NullableString& useCase,
                                                 PLVPaymentInstrumentsCompletion completion) {
  record(trace_, "provider list ", userToken, " use case ", useCase);
  lists.hold(std::move(completion), {.user = &userToken, .useCase = &useCase});
}

void ScriptedProvider::removePaymentInstrument(
    const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument,
    const NullableString& useCase, const NullableString& userToken, PLVErrorCompletion completion) {
  record(trace_, "provider remove ", instrument, " from ", useCase, " of ", userToken);
  removals.hold(std::move(completion), {.user = &userToken, .useCase = &useCase});
}

ScriptedHost::ScriptedHost(Recording recording)
    : trace_(recording == Recording::on ? &trace : nullptr),
      requestBody(std::make_shared<Dictionary>(Dictionary{
          {"credit_card", Dictionary{{"brand", "visa"}, {"last", "1111"}}}, {"provider", 0}})),
      texts(std::make_shared<HLVSDKConstants>(
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
                          .reachabilityPreviousStateKey = "previous"})),
      remoteLogger_(std::make_shared<TracingLogger>(trace_, "remote")),
      consoleLogger_(std::make_shared<TracingLogger>(trace_, "console")),
      body_(std::make_shared<RequestBody>(this)) {}

void ScriptedHost::dropEverything() {
  backend->guestUpdates.drop();
  backend->deletions.drop();
  backend->cardAdds.drop();
  backend->cardUpdates.drop();
  backend->cardFetches.drop();
  provider->tokens.drop();
  provider->adds.drop();
  provider->removals.drop();
  provider->lists.drop();
}

std::string ScriptedHost::takeTrace() {
  std::string joined;
  for (const auto& line : std::exchange(trace, {})) joined += (joined.empty() ? "" : "\n") + line;
  return joined;
}

std::shared_ptr<HLVSDKGuest> ScriptedHost::currentGuest() {
  record(trace_, "host current guest");
  return guest;
}

NullableString ScriptedHost::cardBrandFromNumber(const NullableString& number) {
  if (!number) return std::nullopt;
  return number->starts_with("5") ? "mastercard" : "visa";
}

std::shared_ptr<HLVSDKUpdateGuestRequestInfo> ScriptedHost::makeUpdateGuestRequestInfo() {
  return std::make_shared<FakeUpdateRequest>();
}

void ScriptedHost::handleAssertWithMessage(const NullableString& message) {
  record(trace_, "assert \"", message, "\"");
}

void ScriptedHost::handleParameterAssert(const NullableString& parameter,
                                         const NullableString& message) {
  record(trace_, "assert parameter ", parameter, ": ", message);
}

std::shared_ptr<HLVSDKAddCreditCardRequestInfo::Body> ScriptedHost::makeAddCreditCardRequestBody(
    const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) {
  if (!requestBody) return nullptr;
  requestedCard = instrument.get();
  requestedAddress = address.get();
  return body_;
}

std::shared_ptr<PLVCreditCardPaymentInstrument> ScriptedHost::makeCreditCardPaymentInstrument(
    const NullableString& pan, const NullableString& expiryMonth, const NullableString& expiryYear,
    const NullableString& cvv, const NullableString& cardHolder) {
  auto instrument = std::make_shared<FakeInstrument>();
  // Named by what it was made of, masked.
  instrument->id = "new[" + (pan ? ".." + pan->substr(pan->size() - 4) : "nil") + " " +
                   shownText(expiryMonth) + "/" + shownText(expiryYear) +
                   (cvv ? " cvv of " + std::to_string(cvv->size()) : " nil") + " " +
                   shownText(cardHolder) + "]";
  return instrument;
}

}  // namespace hlv::testing
