// Rules that are functions of values: every combination of a small domain, in which everything that
// can differ differs, against a reference of a few lines.
#include <algorithm>
#include <iterator>
#include <vector>

#include "Matching/HLVSDKPaylevenPaymentInstrumentFinder.h"
#include "Models/HLVSDKAddPaylevenCreditCardRequestInfo.h"
#include "Public/HLVSDKPayleven.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

using Finder = HLVSDKPaylevenPaymentInstrumentFinder;
using HostRequest = HLVSDKAddCreditCardRequestInfo;
using Synchronizer = HLVSDKPaylevenPaymentInstrumentsSynchronizer;
using Instruments = List<PLVCreditCardPaymentInstrument>;
using Texts = std::vector<NullableString>;

/// Missing, empty, one character, in the other case, begun and ended by another.
const Texts texts{std::nullopt, "", "a", "A", "ab", "ba"};
const Texts fewTexts{std::nullopt, "", "a", "A"};

class ValueTest : public KitTest {
 protected:
  ~ValueTest() override { HLVSDKPayleven::resetSharedInstance(); }

  /// Calls `check` with every combination of a text for each field.
  template <class Check>
  static void forEvery(const std::vector<std::pair<NullableString*, Texts>>& fields, Check check,
                       std::size_t first = 0) {
    if (first == fields.size()) return check();
    for (const auto& text : fields[first].second) {
      *fields[first].first = text;
      forEvery(fields, check, first + 1);
      if (HasFailure()) return;
    }
  }
  /// The last of them that matches, in every list of up to three: none, two that match, one that
  /// does not.
  template <class Find>
  void expectTheLastMatch(Find find) {
    const auto one = std::make_shared<FakeInstrument>(), other = std::make_shared<FakeInstrument>(),
               unusable = std::make_shared<FakeInstrument>();
    unusable->stateNumber = 1;
    const std::shared_ptr<FakeInstrument> all[] = {nullptr, one, other, unusable};
    for (std::size_t number = 0; number < 64; ++number) {
      Instruments list;
      std::shared_ptr<PLVCreditCardPaymentInstrument> last;
      for (const auto digit : {number % 4, number / 4 % 4, number / 16}) {
        list.push_back(all[digit]);
        if (digit == 1 || digit == 2) last = all[digit];
      }
      EXPECT_EQ(find(list), last) << number;
    }
    EXPECT_EQ(find(Instruments()), nullptr);
  }
};

TEST_F(ValueTest, AnInstrumentStandsForDigitsAndBrand) {
  NullableString digits, brand;
  for (const std::uint64_t state : {0U, 1U, 256U}) {
    instrument->stateNumber = state;
    forEvery({{&digits, texts},
              {&brand, texts},
              {&instrument->number, texts},
              {&instrument->brand, texts}},
             [&] {
               const bool stands = state == 0 && endsWith(instrument->number, digits) &&
                                   same(instrument->brand, brand);
               EXPECT_EQ(Finder::findPaylevenPaymentInstrumentIn(Instruments{instrument}, digits,
                                                                 brand) != nullptr,
                         stands)
                   << quoted(digits) << quoted(brand) << quoted(instrument->brand);
             });
  }
  expectTheLastMatch([&](const Instruments& list) {
    return Finder::findPaylevenPaymentInstrumentIn(list, "1111", "visa");
  });
}

TEST_F(ValueTest, AnInstrumentStandsForACard) {
  // The digits of a number are its last four characters, in other scripts too.
  const std::pair<NullableString, NullableString> numbers[] = {{std::nullopt, std::nullopt},
                                                               {"", ""},
                                                               {"1", "1"},
                                                               {"4321", "4321"},
                                                               {"54321", "4321"},
                                                               {"1٢٣٤٥", "٢٣٤٥"}};
  for (const auto& [number, digits] : numbers) {
    card->number = number;
    const auto brand = host->cardBrandFromNumber(number);
    forEvery({{&instrument->number, {std::nullopt, "", "1", "321", "4321", "٩٩٤٥", "٢٣٤٥"}},
              {&instrument->brand, {std::nullopt, "", "visa", "VISA", "mastercard"}},
              {&card->month, fewTexts},
              {&instrument->month, fewTexts},
              {&card->year, fewTexts},
              {&instrument->year, fewTexts}},
             [&, &ending = digits] {
               const bool stands =
                   endsWith(instrument->number, ending) && same(instrument->brand, brand) &&
                   same(instrument->month, card->month) && same(instrument->year, card->year);
               EXPECT_EQ(Finder::findPaylevenPaymentInstrumentIn(Instruments{instrument}, card) !=
                             nullptr,
                         stands);
             });
  }
  const auto fresh = std::make_shared<FakeEnteredCard>();
  expectTheLastMatch([&](const Instruments& list) {
    return Finder::findPaylevenPaymentInstrumentIn(list, fresh);
  });
}

TEST_F(ValueTest, TheFirstMissingArgumentOfASearchIsAsserted) {
  NullableString digits, brand, listed;
  forEvery(
      {{&digits, {std::nullopt, ""}}, {&brand, {std::nullopt, ""}}, {&listed, {std::nullopt, ""}}},
      [&] {
        NullableList<PLVCreditCardPaymentInstrument> list;
        if (listed) list = Instruments();
        EXPECT_EQ(Finder::findPaylevenPaymentInstrumentIn(list, digits, brand), nullptr);
        const std::string asserted = host->takeTrace(), prefix = "assert parameter ";
        EXPECT_EQ(asserted, !digits   ? prefix + "lastFourDigits: nil"
                            : !listed ? prefix + "paylevenInstruments: nil"
                            : !brand  ? prefix + "brand: nil"
                                      : "");
        const auto whose = brand ? card : nullptr;
        EXPECT_EQ(Finder::findPaylevenPaymentInstrumentIn(list, whose), nullptr);
        EXPECT_EQ(host->takeTrace(), !whose    ? prefix + "halvoInstrument: nil"
                                     : !listed ? prefix + "paylevenInstruments: nil"
                                               : "");
      });
}

TEST_F(ValueTest, ACardStandsForAnInstrumentByItsIdentifierOrElseByTheRest) {
  const auto synchronizer = Synchronizer::initWithAPIManager(nullptr, nullptr);
  const auto second = std::make_shared<FakeStoredCard>();
  instrument->stateNumber = 1;  // Plays no part here.
  NullableString useCase;
  const auto exists = [&](const NullableList<HLVSDKCreditCard>& cards) {
    return synchronizer->isCreditCardExistsInArray(
        cards, HLVSDKPLVPaymentInstrument::initWithPaymentInstrument(instrument, useCase));
  };
  second->external = "another";
  forEvery({{&storedCard->external, fewTexts},
            {&instrument->id, fewTexts},
            {&storedCard->digits, texts},
            {&instrument->number, texts},
            {&storedCard->brandName, fewTexts},
            {&instrument->brand, fewTexts},
            {&storedCard->useCaseName, {std::nullopt, "a"}},
            {&useCase, fewTexts}},
           [&] {
             const bool expected = standsFor(*storedCard, *instrument, useCase);
             EXPECT_EQ(exists(List<HLVSDKCreditCard>{storedCard}), expected);
             EXPECT_EQ(exists(List<HLVSDKCreditCard>{nullptr, second, storedCard}), expected)
                 << "wherever the last search ended";
           });
  EXPECT_FALSE(exists(std::nullopt) || exists(List<HLVSDKCreditCard>()));
  EXPECT_FALSE(synchronizer->isCreditCardExistsInArray(
      List<HLVSDKCreditCard>{storedCard},
      HLVSDKPLVPaymentInstrument::initWithPaymentInstrument(nullptr, "")));
}

TEST_F(ValueTest, TheFirstEmptyOrMissingFieldOfAnAddressIsReported) {
  const auto manager = makeManager();
  const Texts values{std::nullopt, "", "x"};
  const std::pair<const char*, NullableString*> fields[] = {{"countryCode", &address->country},
                                                            {"street", &address->streetName},
                                                            {"city", &address->cityName},
                                                            {"zip", &address->zipCode}};
  std::vector<std::pair<NullableString*, Texts>> domain{{&address->business, {std::nullopt, "x"}}};
  for (const auto& field : fields) domain.emplace_back(field.second, values);
  const auto before = makeError("before");
  forEvery(domain, [&] {
    const auto* failing = std::find_if(std::begin(fields), std::end(fields), [](const auto& field) {
      return field.second->value_or("").empty();
    });
    const bool valid = failing == std::end(fields);
    ErrorPtr error, kept = before;
    EXPECT_EQ(manager->validateBillingAddress(address, &error), valid);
    EXPECT_EQ(madeAs(error), valid ? "none"
                                   : "invalid '" + std::string(failing->first) + "' value " +
                                         quoted(*failing->second) + ", message nil");
    EXPECT_FALSE(manager->validateBillingAddress(address, &kept));
    EXPECT_EQ(kept == before, valid);
    EXPECT_TRUE(valid || !manager->validateBillingAddress(address, nullptr));
  });
  ErrorPtr error;
  EXPECT_FALSE(manager->validateBillingAddress(nullptr, &error));
  EXPECT_EQ(madeAs(error), "invalid 'countryCode' value nil, message nil");
}

TEST_F(ValueTest, AnUpdateSendsThePresentFieldsUnderTheHostsKeys) {
  const auto manager = makeManager();
  const std::vector<std::pair<NullableString*, Texts>> fields{
      {&address->streetName, {std::nullopt, "", "s"}},
      {&address->cityName, {std::nullopt, "", "ci"}},
      {&address->country, {std::nullopt, "", "co"}},
      {&address->zipCode, {std::nullopt, "", "z"}},
      {&address->business, {std::nullopt, "", "b"}}};
  host->network->state = 0;  // Not looked at.
  for (std::size_t keys = 6; keys-- > 0;) {
    host->texts->businessAddressJSONKeyes.resize(std::min<std::size_t>(keys, 5));
    forEvery(fields, [&] {
      Dictionary expected;
      for (std::size_t i = 0; i < keys && i < 5; ++i) {
        if (const auto& text = *fields[i].first) expected["k" + std::to_string(i)] = *text;
      }
      manager->updatePaymentInstrument("id", address, guest, guestCard());
      EXPECT_EQ(backend.lastAddress, expected);
    });
  }
  manager->updatePaymentInstrument(std::nullopt, nullptr, nullptr, nullptr);
  EXPECT_EQ(backend.lastAddress, Dictionary());
  EXPECT_EQ(outcome.count, 0);
}

TEST_F(ValueTest, ARequestCarriesItsTokenInsideTheCardObject) {
  const Dictionary object{{"brand", "visa"}, {"last", "1111"}};
  for (const NullableString& token : {NullableString(), NullableString(""), NullableString("t")}) {
    for (const Value& hostCard : {Value(object), Value("text"), Value()}) {
      for (const auto& verdict : {ErrorPtr(), makeError("host")}) {
        *host->requestBody = {{"credit_card", hostCard}, {"other", 7}};
        host->requestError = verdict;
        host->requestProvider = -1;
        const auto request =
            HLVSDKAddPaylevenCreditCardRequestInfo::initWithPaymentInstrument(card, address, token);
        EXPECT_EQ(host->requestProvider, 0);
        EXPECT_EQ(host->requestedCard, card.get());
        EXPECT_EQ(host->requestedAddress, address.get());
        const bool valid = !verdict && length(token) > 0;
        ErrorPtr error;
        EXPECT_EQ(request->isValid(&error), valid);
        EXPECT_EQ(request->isValid(nullptr), valid);
        EXPECT_EQ(madeAs(error),
                  verdict ? "host"
                  : valid ? "none"
                          : "invalid 'paylevenToken' value " + quoted(token) + ", message nil");
        EXPECT_EQ(HostRequest::initWithPaymentInstrument(card, address)->JSONRepresentation(),
                  *host->requestBody);
        Dictionary expected = *host->requestBody;
        if (hostCard == Value(object) && token) {
          auto withToken = object;
          withToken["plv_token"] = *token;
          expected["credit_card"] = withToken;
        }
        const auto body = request->JSONRepresentation();
        request->setPaylevenToken("later");
        EXPECT_EQ(body, expected);
      }
    }
  }
  host->requestBody = nullptr;
  EXPECT_EQ(HostRequest::initWithPaymentInstrument(card, address), nullptr);
  EXPECT_EQ(HLVSDKAddPaylevenCreditCardRequestInfo::initWithPaymentInstrument(card, address, "t"),
            nullptr);
}

TEST_F(ValueTest, TheLastEntryOfTheReceiversClassCounts) {
  const auto withKey = [](const NullableString& key) -> std::shared_ptr<Object> {
    return HLVSDKPaylevenKitConfiguration::configurationWithBlock(
        [&](const auto& configuration) { configuration->setPaymentKey(key); });
  };
  const HLVSDKKitClass other(this);
  const std::string must = "assert \"Configuration for PaylevenKit must ";
  const std::string wrongKind = must + "be kind of HLVSDKPaylevenKitConfiguration class\"";
  const std::string enabled = "host current guest\nprovider register ";
  const auto kit = HLVSDKPayleven::kitClass();
  EXPECT_NE(kit, HLVSDKKitClass());
  const std::tuple<HLVSDKKitClass, std::shared_ptr<Object>, std::string> rows[] = {
      {other, withKey("other"), ""},
      {kit, nullptr, wrongKind},
      {kit, guest, wrongKind},
      {kit, withKey(std::nullopt), must + "have payment key\""},
      {kit, withKey(""), enabled + "''"},
      {kit, withKey("a"), enabled + "'a'"},
      {kit, withKey("b"), enabled + "'b'"}};
  for (std::size_t number = 0; number < 7 * 7 * 7; ++number) {
    List<HLVSDKKitEntry> entries;
    std::string expected = "assert \"Configuration must have HLVSDKPaylevenKit in kits array\"";
    for (const auto digit : {number % 7, number / 7 % 7, number / 49}) {
      const auto& [whose, configuration, trace] = rows[digit];
      entries.push_back(HLVSDKKitEntry::make(whose, configuration));
      if (whose == kit) expected = trace;
    }
    const auto configuration = HLVSDKConfiguration::make(entries);
    HLVSDKPayleven::enableWithConfiguration(configuration);
    EXPECT_EQ(host->takeTrace(), expected) << number;
    HLVSDKPayleven::resetSharedInstance();
    HLVSDKPayleven::enableWithConfiguration(configuration, other);
    EXPECT_EQ(HLVSDKPayleven::sharedInstance() != nullptr,
              number % 7 == 0 || number / 7 % 7 == 0 || number / 49 == 0);
    HLVSDKPayleven::resetSharedInstance();
    host->takeTrace();
  }
}

TEST_F(ValueTest, AStateIsReachableByItsLowestEightBits) {
  auto manager = makeManager();
  EXPECT_FALSE(manager->isConnectionAvailable()) << "until it is first set";
  std::vector<std::pair<Value, bool>> rows{{Value(), false}, {Value("1"), false}, {true, true},
                                           {-1e300, false},  {1.5, true},         {0.5, false},
                                           {1e300, false}};
  for (int state = -300; state < 600; ++state) rows.push_back({state, state % 256 != 0});
  for (const auto& [state, reachable] : rows) {
    platform->notificationCenter()->post({"reachability", {{"state", state}}});
    EXPECT_EQ(manager->isConnectionAvailable(), reachable);
  }
  manager.reset();
  platform->notificationCenter()->post({"reachability", {{"state", 1}}});  // Reaches nobody.
}

TEST_F(ValueTest, ANotificationSynchronisesAnAuthorisedGuestWithATokenOnAChangeIntoReachable) {
  const struct {
    Value value;
    bool isTrue;
    int byte;
  } states[] = {{Value(), false, 0}, {0, false, 0},  {1, true, 1},    {2, true, 2},
                {256, true, 0},      {257, true, 1}, {-1, true, 255}, {false, false, 0},
                {true, true, 1},     {0.5, true, 0}, {"1", false, 0}};
  host->guest = guest;
  const auto kit = HLVSDKPayleven::initWithConfiguration(nullptr, nullptr);
  const auto starts = [&](const std::string& name, const Dictionary& info) {
    kit->setUpPaymentInstrumentsSynchronizer();
    host->takeTrace();
    platform->notificationCenter()->post({name, info});
    return host->takeTrace().find("provider list") != std::string::npos;
  };
  forEvery({{&guest->token, {std::nullopt, "", "t"}}}, [&] {
    const bool hasToken = length(guest->token) > 0;
    for (const bool authorized : {false, true}) {
      host->session->authorized = authorized;
      EXPECT_EQ(starts(UIApplicationWillEnterForegroundNotification, {}), authorized && hasToken);
      for (const auto& state : states) {
        EXPECT_EQ(starts("authorization", {{"isAuthorized", state.value}}),
                  state.isTrue && hasToken);
        for (const auto& previous : states) {
          EXPECT_EQ(starts("reachability", {{"state", state.value}, {"previous", previous.value}}),
                    authorized && hasToken && state.byte != 0 && state.byte != previous.byte);
        }
      }
    }
  });
  EXPECT_FALSE(starts("authorization", {}));
  EXPECT_FALSE(Value(std::shared_ptr<const Object>(guest)).isNull());
  EXPECT_EQ(Value(0U), Value(0)) << "an unsigned number that a signed one can hold";
  for (const double tooLarge : {1e300, 9.2e18}) EXPECT_EQ(Value(tooLarge).integerValue(), 0);
}

}  // namespace
}  // namespace hlv::testing
