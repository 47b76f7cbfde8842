// A host of one's own, as small as it can be: everything in memory, every reply inside the call. It
// is a skeleton to begin with; docs/host.md says what each part must do. The program adds a card,
// deletes it, and lets the kit remove an instrument that the backend does not know.
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "Public/HLVSDKPaylevenKit.h"

namespace {

using hlv::ErrorPtr;
using hlv::List;
using hlv::NullableString;

// Records.

class Failure final : public hlv::Error {
 public:
  Failure(std::string domain, std::int64_t code, std::string text)
      : domain_(std::move(domain)), code_(code), text_(std::move(text)) {}
  hlv::Text domain() const override { return domain_; }
  std::int64_t code() const override { return code_; }
  NullableString localizedDescription() const override { return text_; }
  NullableString developerMessage() const override { return text_; }

 private:
  const std::string domain_;
  const std::int64_t code_;
  const std::string text_;
};

/// What the user typed. A real one checks number, expiry and security code.
struct TypedCard final : hlv::HLVSDKPaymentInstrument {
  NullableString number, month, year, code, holder, external;

  NullableString pan() const override { return number; }
  NullableString expiryMonth() const override { return month; }
  NullableString expiryYear() const override { return year; }
  NullableString cvv() const override { return code; }
  NullableString cardHolder() const override { return holder; }
  NullableString instrumentUseCaseString() const override { return "default"; }
  bool isValid(ErrorPtr* error) const override {
    if (length(number) >= 12) return true;
    if (error) *error = std::make_shared<Failure>("my.cards", 1, "The number is too short.");
    return false;
  }
  void setExternalIdentifier(const NullableString& identifier) override { external = identifier; }
};

/// A card as the backend keeps it: no number, no security code.
struct StoredCard final : hlv::HLVSDKCreditCard {
  NullableString id, digits, brandName, use, external;

  NullableString halvoID() const override { return id; }
  NullableString lastFourDigits() const override { return digits; }
  NullableString brand() const override { return brandName; }
  NullableString useCase() const override { return use; }
  NullableString externalIdentifier() const override { return external; }
};

/// One object for as long as the guest is signed in, and always up to date.
class Guest final : public hlv::HLVSDKGuest {
 public:
  NullableString email() const override { return "guest@example.com"; }
  NullableString paylevenToken() const override {
    const std::lock_guard lock(mutex_);
    return token_;
  }
  hlv::NullableList<hlv::HLVSDKCreditCard> creditCards() const override {
    const std::lock_guard lock(mutex_);
    return cards_;
  }
  void setToken(const NullableString& token) {
    const std::lock_guard lock(mutex_);
    token_ = token;
  }
  void setCards(List<hlv::HLVSDKCreditCard> cards) {
    const std::lock_guard lock(mutex_);
    cards_ = std::move(cards);
  }

 private:
  mutable std::mutex mutex_;
  NullableString token_;
  List<hlv::HLVSDKCreditCard> cards_;
};

struct StoredInstrument final : hlv::PLVCreditCardPaymentInstrument {
  NullableString id, number, brand, month, year;

  NullableString identifier() const override { return id; }
  NullableString pan() const override { return number; }
  NullableString cardBrand() const override { return brand; }
  NullableString expiryMonth() const override { return month; }
  NullableString expiryYear() const override { return year; }
  std::uint64_t state() const override { return 0; }
};

// Requests.

struct UpdateGuestRequest final : hlv::HLVSDKUpdateGuestRequestInfo {
  NullableString token;
  void setPaymentToken(const NullableString& newToken) override { token = newToken; }
};

/// The host's half of a request that registers a card.
struct AddCardBody final : hlv::HLVSDKAddCreditCardRequestBody {
  hlv::Dictionary card;
  std::int64_t providerNumber = 0;

  void setProvider(std::int64_t provider) override { providerNumber = provider; }
  hlv::Dictionary JSONRepresentation() const override {
    return {{"credit_card", card}, {"provider", providerNumber}};
  }
  bool isValid(ErrorPtr*) const override { return true; }
};

// Services. Real ones send requests and reply later, from any thread.

class Backend final : public hlv::HLVSDKAPIManager {
 public:
  explicit Backend(std::shared_ptr<Guest> guest) : guest_(std::move(guest)) {}

  void updateCurrentGuestWithRequest(
      const std::shared_ptr<hlv::HLVSDKUpdateGuestRequestInfo>& request,
      hlv::HLVSDKGuestCompletion completion) override {
    guest_->setToken(std::static_pointer_cast<UpdateGuestRequest>(request)->token);
    if (completion) completion(guest_, nullptr);
  }
  void addCreditCardForGuest(const std::shared_ptr<hlv::HLVSDKGuest>&,
                             const std::shared_ptr<hlv::HLVSDKAddCreditCardRequestInfo>& request,
                             hlv::HLVSDKGuestCardCompletion completion) override {
    // What would be sent. The kit has added the provider user token to it.
    const auto body = request->JSONRepresentation();
    const auto& sent = *valueForKey(body, "credit_card").dictionary();
    const auto card = std::make_shared<StoredCard>();
    card->id = "card-" + std::to_string(++count_);
    card->digits = *valueForKey(sent, "last_four_digits").string();
    card->brandName = *valueForKey(sent, "brand").string();
    card->external = *valueForKey(sent, "external_identifier").string();
    card->use = "default";
    auto cards = *guest_->creditCards();
    cards.push_back(card);
    guest_->setCards(std::move(cards));
    if (completion) completion(guest_, card, nullptr);
  }
  void deleteCreditCardWithID(const NullableString& ID, const std::shared_ptr<hlv::HLVSDKGuest>&,
                              hlv::HLVSDKGuestCompletion completion) override {
    auto cards = *guest_->creditCards();
    std::erase_if(cards, [&](const auto& card) { return card->halvoID() == ID; });
    guest_->setCards(std::move(cards));
    if (completion) completion(guest_, nullptr);
  }
  void updateCreditCard(const NullableString&, const hlv::Dictionary&,
                        const std::shared_ptr<hlv::HLVSDKGuest>&,
                        hlv::HLVSDKGuestCardCompletion completion) override {
    if (completion) completion(guest_, nullptr, nullptr);
  }
  void fetchGuestCreditCards(const std::shared_ptr<hlv::HLVSDKGuest>&,
                             hlv::HLVSDKCreditCardsCompletion completion) override {
    if (completion) completion(guest_->creditCards(), nullptr);
  }

 private:
  const std::shared_ptr<Guest> guest_;
  int count_ = 0;
};

class Provider final : public hlv::PLVInAppClient {
 public:
  List<hlv::PLVCreditCardPaymentInstrument> instruments;

  void registerWithAPIKey(const NullableString&) override {}
  void createUserToken(const NullableString&,
                       const std::shared_ptr<hlv::PLVCreditCardPaymentInstrument>& instrument,
                       const NullableString&, hlv::PLVUserTokenCompletion completion) override {
    instruments.push_back(instrument);
    if (completion) completion("a-user-token", nullptr);
  }
  void addPaymentInstrument(const std::shared_ptr<hlv::PLVCreditCardPaymentInstrument>& instrument,
                            const NullableString&, const NullableString&,
                            hlv::PLVErrorCompletion completion) override {
    instruments.push_back(instrument);
    if (completion) completion(nullptr);
  }
  void getPaymentInstrumentsList(const NullableString&, const NullableString& useCase,
                                 hlv::PLVPaymentInstrumentsCompletion completion) override {
    const auto listed =
        useCase == "default" ? instruments : List<hlv::PLVCreditCardPaymentInstrument>();
    if (completion) completion(listed, nullptr);
  }
  void removePaymentInstrument(
      const std::shared_ptr<hlv::PLVCreditCardPaymentInstrument>& instrument, const NullableString&,
      const NullableString&, hlv::PLVErrorCompletion completion) override {
    std::erase(instruments, instrument);
    if (completion) completion(nullptr);
  }
};

struct Network final : hlv::HLVSDKReachability {
  std::int64_t currentState() const override { return 1; }
};

struct Session final : hlv::HLVSession {
  bool isAuthorized() const override { return true; }
};

// Errors and log lines.

struct ErrorFacade final : hlv::HLVErrorFacade {
  ErrorPtr errorWithCode(std::int64_t code, const NullableString& domain,
                         const NullableString& message) override {
    return std::make_shared<Failure>(domain.value_or(""), code, message.value_or("It failed."));
  }
  ErrorPtr invalidArgumentErrorWithName(const NullableString& name, const NullableString&,
                                        const NullableString&) override {
    return std::make_shared<Failure>("my.arguments", 1, name.value_or("") + " is not valid.");
  }
  ErrorPtr requiredArgumentErrorWithName(const NullableString& name, const NullableString& message,
                                         const char*, const char*) override {
    return std::make_shared<Failure>("my.arguments", 2,
                                     message.value_or(name.value_or("") + " is missing."));
  }
  ErrorPtr paymentProviderErrorWithError(const ErrorPtr& error) override {
    return std::make_shared<Failure>("my.provider", error->code(),
                                     error->localizedDescription().value_or("It failed."));
  }
};

struct Logger final : hlv::HLVSDKLogger {
  void logWithLevel(int level, const char*, int, const char*, const char* format,
                    const std::vector<hlv::HLVSDKLogArgument>&) override {
    std::printf("  log %d: %s\n", level, format);
  }
};

// The host.

class MinimalHost final : public hlv::Host {
 public:
  const std::shared_ptr<Guest> guest = std::make_shared<Guest>();
  const std::shared_ptr<Provider> provider = std::make_shared<Provider>();

  std::shared_ptr<const hlv::HLVSDKConstants> constants() override { return constants_; }
  std::shared_ptr<hlv::HLVSDKAPIManager> apiManager() override { return backend_; }
  std::shared_ptr<hlv::HLVSDKReachability> reachability() override { return network_; }
  std::shared_ptr<hlv::HLVSDKGuest> currentGuest() override { return guest; }
  NullableString cardBrandFromNumber(const NullableString& number) override {
    return number && number->starts_with("4") ? "visa" : nullptr;
  }
  std::shared_ptr<hlv::HLVSDKUpdateGuestRequestInfo> makeUpdateGuestRequestInfo() override {
    return std::make_shared<UpdateGuestRequest>();
  }
  void handleAssertWithMessage(const NullableString& message) override {
    std::fprintf(stderr, "assertion: %s\n", message.value_or("").c_str());
  }
  void handleParameterAssert(const NullableString& parameter, const NullableString&) override {
    std::fprintf(stderr, "assertion: %s\n", parameter.value_or("").c_str());
  }
  std::shared_ptr<hlv::HLVSDKLogger> remoteLogger() override { return nullptr; }
  std::shared_ptr<hlv::HLVSDKLogger> consoleLogger() override { return logger_; }
  std::shared_ptr<hlv::HLVSDKAddCreditCardRequestBody> makeAddCreditCardRequestBody(
      const std::shared_ptr<hlv::HLVSDKPaymentInstrument>& instrument,
      const std::shared_ptr<hlv::HLVSDKPaymentBillingAddress>&) override {
    const auto number = *instrument->pan();
    auto body = std::make_shared<AddCardBody>();
    body->card = {{"brand", cardBrandFromNumber(number)},
                  {"last_four_digits", number.substr(number.size() - 4)},
                  {"external_identifier", static_cast<TypedCard&>(*instrument).external}};
    return body;
  }
  std::shared_ptr<hlv::HLVSession> activeSession() override { return session_; }
  std::shared_ptr<hlv::HLVErrorFacade> makeErrorFacade() override {
    return std::make_shared<ErrorFacade>();
  }
  std::shared_ptr<hlv::PLVInAppClient> inAppClient() override { return provider; }
  std::shared_ptr<hlv::PLVCreditCardPaymentInstrument> makeCreditCardPaymentInstrument(
      const NullableString& pan, const NullableString& expiryMonth,
      const NullableString& expiryYear, const NullableString&, const NullableString&) override {
    auto made = std::make_shared<StoredInstrument>();
    made->id = "instrument-" + std::to_string(++count_);
    made->number = "**** " + pan->substr(pan->size() - 4);
    made->brand = cardBrandFromNumber(pan);
    made->month = expiryMonth;
    made->year = expiryYear;
    return made;
  }

 private:
  const std::shared_ptr<const hlv::HLVSDKConstants> constants_ =
      std::make_shared<hlv::HLVSDKConstants>(hlv::HLVSDKConstants{
          .useCaseDefault = "default",
          .useCasePrivate = "private",
          .useCaseBusiness = "business",
          .businessAddressJSONKeyes = {"street", "city", "country_code", "zip", "business_name"},
          .urlErrorDomain = "my.network",
          .paymentErrorDomain = "my.payment",
          .authorizationStatusNotification = "my.authorization",
          .isAuthorizedKey = "is_authorized",
          .reachabilityStateNotification = "my.reachability",
          .reachabilityStateKey = "state",
          .reachabilityPreviousStateKey = "previous_state"});
  const std::shared_ptr<Backend> backend_ = std::make_shared<Backend>(guest);
  const std::shared_ptr<Network> network_ = std::make_shared<Network>();
  const std::shared_ptr<Session> session_ = std::make_shared<Session>();
  const std::shared_ptr<Logger> logger_ = std::make_shared<Logger>();
  int count_ = 0;
};

}  // namespace

int main() {
  const auto host = std::make_shared<MinimalHost>();
  hlv::Host::install(host);

  const auto key = hlv::HLVSDKPaylevenKitConfiguration::configurationWithBlock(
      [](const auto& configuration) { configuration->setPaymentKey("a-payment-key"); });
  const auto entry = hlv::HLVSDKKitEntry::make(hlv::HLVSDKPayleven::kitClass(), key);
  hlv::HLVSDKPayleven::enableWithConfiguration(hlv::HLVSDKConfiguration::make({{entry}}));

  const auto platform = hlv::DefaultPlatform::shared();
  const auto cards = hlv::HLVSDKPaymentManager::make();
  const auto card = std::make_shared<TypedCard>();
  card->number = "4111111111111111";
  card->month = "12";
  card->year = "2030";
  card->code = "737";
  std::string added;
  for (int round = 0; round < 2; ++round) {
    cards->addPaymentInstrument(card, nullptr, host->guest,
                                [&](const auto&, const auto& stored, const ErrorPtr& error) {
                                  if (stored && !error) added = *stored->halvoID();
                                });
    platform->runPending();
  }
  std::printf("added: %zu cards, %zu instruments\n", host->guest->creditCards()->size(),
              host->provider->instruments.size());

  bool deleted = false;
  cards->deletePaymentInstrumentWithID(
      added, "default", host->guest, [&](const auto&, const ErrorPtr& error) { deleted = !error; });
  platform->runPending();
  host->guest->setCards({});  // The backend forgets the other card behind the provider's back.
  platform->notificationCenter()->post({hlv::UIApplicationWillEnterForegroundNotification, {}});
  platform->runUntil([&] { return platform->isIdle(); });
  std::printf("synchronised: %zu instruments\n", host->provider->instruments.size());
  return deleted && host->provider->instruments.empty() ? 0 : 1;
}
