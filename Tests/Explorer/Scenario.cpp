#include "Tests/Explorer/Scenario.h"

#include <array>

#include "Platform/Notification.h"

namespace hlv::testing {
namespace {

std::shared_ptr<FakeInstrument> instrument(const char* identifier, const char* digits,
                                           std::uint64_t state = 0) {
  const auto made = std::make_shared<FakeInstrument>();
  made->id = identifier ? NullableString(identifier) : std::nullopt;
  made->number = std::string("************") + digits;
  made->stateNumber = state;
  return made;
}

using Instruments = List<PLVCreditCardPaymentInstrument>;
using Cards = List<HLVSDKCreditCard>;
using enum Service;

std::shared_ptr<FakeStoredCard> storedCard(NullableString external, const char* digits = "1111",
                                           const char* useCase = "default") {
  const auto made = std::make_shared<FakeStoredCard>();
  made->external = std::move(external);
  made->digits = digits;
  made->useCaseName = useCase;
  return made;
}

// The instruments that lists are made of: three that match the card, and those that do not.
const auto matching = instrument("plv-1", "1111");
const auto nameless = instrument("", "1111");
const auto laterMatch = instrument("plv-2", "1111");
const auto unidentified = instrument(nullptr, "1111");
const auto unusable = instrument("plv-3", "1111", 1);
const auto another = instrument("plv-4", "2222");

/// Everything that the services may answer to operations on a card.
PossibleReplies everyAnswer() {
  const auto& cast = Fixtures::shared();
  const Answers doneOrNot{{.name = "done"}, {.name = "an error", .fails = true}};
  const Answers emptyList{{.name = "an empty list", .instruments = Instruments{}}};
  return {{createToken,
           {{.name = "a token", .token = "created"},
            {.name = "an empty token", .token = ""},
            {.name = "nothing"},
            {.name = "a token and an error", .fails = true, .token = "created"}}},
          {addInstrument, doneOrNot},
          {removeInstrument, doneOrNot},
          {updateGuest,
           {{.name = "the guest", .guest = cast.addedTo}, {.name = "an error", .fails = true}}},
          {addCard,
           {{.name = "the card", .guest = cast.addedTo, .card = cast.registered},
            {.name = "nothing"},
            {.name = "the card and an error",
             .fails = true,
             .guest = cast.addedTo,
             .card = cast.registered},
            {.name = "an error", .fails = true}}},
          {deleteCard,
           {{.name = "the guest", .guest = cast.deletedFrom},
            {.name = "a guest without token", .guest = cast.tokenless},
            {.name = "nobody"},
            {.name = "an error", .fails = true}}},
          {updateCard,
           {{.name = "the card", .guest = cast.addedTo, .card = cast.registered},
            {.name = "an error", .fails = true}}},
          {privateList, emptyList},
          {businessList, emptyList},
          {defaultList,
           {{.name = "two matches", .instruments = Instruments{matching, nameless, another}},
            {.name = "one usable match", .instruments = Instruments{matching, unusable}},
            {.name = "an unidentified match", .instruments = Instruments{unidentified}},
            {.name = "no match", .instruments = Instruments{another, unusable}},
            {.name = "no list"},
            {.name = "a list and an error", .fails = true, .instruments = Instruments{matching}},
            {.name = "an error", .fails = true}}}};
}

void keepEnds(Answers& answers) { answers.erase(answers.begin() + 1, answers.end() - 1); }

/// Success, or an error.
PossibleReplies successOrError() {
  auto replies = everyAnswer();
  for (const auto service : {createToken, addCard, deleteCard}) keepEnds(replies[service]);
  replies[defaultList] = {{.name = "a match", .instruments = Instruments{matching}},
                          {.name = "an error", .fails = true}};
  replies[fetchCards] = {{.name = "no cards", .cards = Cards{}}};
  return replies;
}

/// `count` instruments over the three use cases, the first of which the backend may know by its
/// identifier, by its digits, or not at all.
PossibleReplies instruments(std::size_t count) {
  std::vector<Instruments> lists(3);
  const std::shared_ptr<FakeInstrument> all[] = {matching, another, laterMatch, unidentified};
  for (std::size_t i = 0; i < count; ++i) lists[i % 3].push_back(all[i]);
  const auto answers = [&](const Instruments& list) {
    return Answers{{.name = "its list", .instruments = list},
                   {.name = "no list"},
                   {.name = "a list and an error", .fails = true, .instruments = list}};
  };
  PossibleReplies replies;
  replies[privateList] = answers(lists[0]);
  replies[businessList] = answers(lists[1]);
  replies[defaultList] = answers(lists[2]);
  replies[fetchCards] = {{.name = "cards known by identifier",
                          .cards = Cards{storedCard("plv-1"), storedCard("plv-2")}},
                         {.name = "cards known by digits",
                          .cards = Cards{storedCard("plv-9", "1111", "private"),
                                         storedCard(std::nullopt, "1111", "private"),
                                         storedCard(std::nullopt, "2222", "private")}},
                         {.name = "no cards", .cards = Cards{}},
                         {.name = "no list"},
                         {.name = "an error", .fails = true}};
  replies[removeInstrument] = {{.name = "done"}, {.name = "an error", .fails = true}};
  return replies;
}

const Posted foreground{"the app returns to the foreground",
                        UIApplicationWillEnterForegroundNotification};
const Posted authorized{"authorised", "authorization", 1};
const Posted unauthorized{"no longer authorised", "authorization", 0};
const Posted lost{"no longer reachable", "reachability", 0, 1};
const Posted found{"reachable again", "reachability", 1, 0};

const Operation addFirst{OperationKind::add,
                         {{.name = "a first card", .guestToken = std::nullopt}}};
const Operation addFurther{OperationKind::add, {{.name = "a further card"}}};
const Operation remove{OperationKind::remove, {{.name = "delete"}}};
const Operation update{OperationKind::update, {{.name = "update"}}};
const Operation synchronize{OperationKind::synchronize, {{.name = "synchronise"}}};

std::vector<Scenario> singleOperations() {
  const auto addFirstOtherwise =
      Operation{OperationKind::add,
                {{.name = "an empty token", .guestToken = ""},
                 {.name = "without a completion", .completion = false, .guestToken = std::nullopt},
                 {.name = "without a guest", .guest = false}}};
  const auto addFurtherAnyhow = Operation{
      OperationKind::add,
      {{.name = "a further card"}, {.name = "without a completion", .completion = false}}};
  const auto addRefused =
      Operation{OperationKind::add,
                {{.name = "invalid", .valid = false},
                 {.name = "invalid and offline", .valid = false, .network = 0},
                 {.name = "offline", .network = 0},
                 {.name = "offline in eight bits", .network = 256},
                 {.name = "no card", .card = false},
                 {.name = "offline, without a completion", .completion = false, .network = 0}}};
  const auto deleteAnyhow = Operation{OperationKind::remove,
                                      {{.name = "delete", .guestToken = "", .useCase = ""},
                                       {.name = "without a completion", .completion = false}}};
  const auto deleteRefused = Operation{
      OperationKind::remove,
      {{.name = "nothing given", .guest = false, .id = std::nullopt, .useCase = std::nullopt},
       {.name = "no token", .guestToken = std::nullopt, .id = std::nullopt},
       {.name = "no identifier", .id = std::nullopt, .useCase = std::nullopt},
       {.name = "no use case", .id = "unknown", .useCase = std::nullopt},
       {.name = "an empty identifier, offline", .network = 0, .id = ""},
       {.name = "offline", .network = 0},
       {.name = "no use case, no completion", .completion = false, .useCase = std::nullopt}}};
  const auto updateAnyhow = Operation{OperationKind::update,
                                      {{.name = "update"},
                                       {.name = "without a completion", .completion = false},
                                       {.name = "offline", .network = 0}}};
  const auto confirmAnyhow = Operation{
      OperationKind::confirm,
      {{.name = "confirm"},
       {.name = "without a completion", .completion = false},
       {.name = "no card", .card = false},
       {.name = "no token", .confirmToken = std::nullopt},
       {.name = "nothing", .card = false, .confirmToken = std::nullopt},
       {.name = "no token, no completion", .completion = false, .confirmToken = std::nullopt}}};
  std::vector<Scenario> scenarios;
  const auto alone = [&](const char* name, const Operation& operation,
                         std::size_t interferences = 1) {
    scenarios.push_back({.name = name,
                         .operations = {operation},
                         .replies = everyAnswer(),
                         .notifications = {lost, found},
                         .interferences = interferences});
  };
  alone("a first card", addFirst);
  alone("a first card, asked for otherwise", addFirstOtherwise, 0);
  alone("a further card", addFurtherAnyhow);
  alone("a card that is refused", addRefused);
  alone("a deletion", deleteAnyhow);
  alone("a deletion that is refused", deleteRefused);
  alone("an update", updateAnyhow);
  alone("a confirmation", confirmAnyhow);
  return scenarios;
}

std::vector<Scenario> severalOperations() {
  std::vector<Scenario> scenarios;
  const auto together = [&](const std::vector<Operation>& operations,
                            const PossibleReplies& replies, const char* how, bool isLong) {
    std::string name;
    for (const auto& one : operations) {
      name += (name.empty() ? "" : ", then ") + std::string(one.requests[0].name);
    }
    scenarios.push_back({.name = name + how,
                         .operations = operations,
                         .replies = replies,
                         .bothThreads = false,
                         .isLong = isLong});
  };
  auto everything = everyAnswer();
  everything[fetchCards] = {{.name = "no cards", .cards = Cards{}},
                            {.name = "an error", .fails = true}};
  auto few = successOrError();
  // The join of a first card is explored with fewer operations.
  few[updateGuest].resize(1);
  const Operation operations[] = {addFirst, addFurther, remove, update, synchronize};
  for (const auto& one : operations) {
    for (const auto& other : operations) {
      together({one, other}, few, "", false);
      together({one, other}, everything, ", every answer", true);
    }
  }
  for (const auto& order :
       {std::array{addFirst, remove, synchronize}, std::array{addFirst, synchronize, remove},
        std::array{remove, addFirst, synchronize}, std::array{remove, synchronize, addFirst},
        std::array{synchronize, addFirst, remove}, std::array{synchronize, remove, addFirst}}) {
    together({order.begin(), order.end()}, few, "", true);
  }
  return scenarios;
}

std::vector<Scenario> synchronisations() {
  std::vector<Scenario> scenarios;
  for (std::size_t count = 0; count <= 4; ++count) {
    const std::string name = "a synchronisation of " + std::to_string(count);
    auto fetching = instruments(count);
    fetching[removeInstrument].resize(1);
    scenarios.push_back({.name = name + ", every fetch",
                         .operations = {synchronize},
                         .replies = fetching,
                         .bothThreads = count == 3});
    auto removing = instruments(count);
    for (auto* list : {&removing[privateList], &removing[businessList], &removing[defaultList]}) {
      list->resize(1);
    }
    scenarios.push_back({.name = name + ", every removal",
                         .operations = {synchronize},
                         .replies = removing,
                         .bothThreads = count < 4});
  }
  const auto withRequests = [&](const char* name, const std::vector<Operation>& operations) {
    auto replies = instruments(2);
    replies[privateList].resize(1);
    replies[businessList].resize(1);
    for (const auto service : {defaultList, fetchCards}) keepEnds(replies[service]);
    scenarios.push_back({.name = name,
                         .operations = operations,
                         .replies = replies,
                         .bothThreads = false,
                         .notifications = {foreground, authorized},
                         .interferences = 1,
                         .kitGuestHasToken = true});
  };
  const Request silent{.name = "without a completion", .completion = false};
  withRequests("a synchronisation and a notification",
               {{OperationKind::synchronize,
                 {{}, {.name = "an empty token, silent", .completion = false, .guestToken = ""}}}});
  withRequests("a synchronisation that is refused",
               {synchronize,
                {OperationKind::synchronize,
                 {{.name = "without a guest", .guest = false},
                  {.name = "without a token", .guestToken = std::nullopt},
                  {.name = "with neither", .guestToken = std::nullopt, .guest = false}}}});
  withRequests(
      "a fetch of all instruments",
      {{OperationKind::fetchAll, {{}, silent, {.name = "without a guest", .guest = false}}}});
  return scenarios;
}

std::vector<Scenario> enablings() {
  // Which entry counts, and which state, is a matter of values and not of orders.
  const Operation enable{OperationKind::enable,
                         {{.name = "no key", .kits = {"no key"}},
                          {.name = "an empty key", .kits = {""}},
                          {.name = "two keys", .kits = {"nothing", "key", "last", "another kit"}}}};
  const std::vector<Posted> notifications{foreground, lost, found, unauthorized, authorized};
  auto atOnce = successOrError();
  atOnce[defaultList].resize(1);
  atOnce[removeInstrument].resize(1);
  std::vector<Scenario> scenarios;
  for (const bool session : {true, false}) {
    for (const bool token : {true, false}) {
      scenarios.push_back({.name = std::string("enabling ") + (session ? "with" : "without") +
                                   " a session, " + (token ? "with" : "without") + " a token",
                           .operations = {enable, enable},
                           .replies = atOnce,
                           .notifications = notifications,
                           .interferences = 2,
                           .kitGuestHasToken = token,
                           .authorized = session});
    }
  }
  return scenarios;
}

}  // namespace

Fixtures& Fixtures::shared() {
  static Fixtures cast;
  return cast;
}

Fixtures::Fixtures() {
  guest->emailText = "guest";
  addedTo->emailText = "added-to";
  deletedFrom->emailText = "deleted-from";
  addedTo->token = "tok of added-to";
  deletedFrom->token = "tok of deleted-from";
  storedCard->useCaseName = "stored";
  tokenless->emailText = "tokenless";
  namesake->digits = "2222";
  registered->id = "registered";
  guest->cards = List<HLVSDKCreditCard>{storedCard, namesake};
}

const std::vector<Scenario>& allScenarios() {
  static const std::vector<Scenario> scenarios = [] {
    auto all = singleOperations();
    for (auto& more : {severalOperations(), synchronisations(), enablings()}) {
      all.insert(all.end(), more.begin(), more.end());
    }
    return all;
  }();
  return scenarios;
}

}  // namespace hlv::testing
