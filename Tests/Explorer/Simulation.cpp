#include "Tests/Explorer/Simulation.h"

#include <utility>

#include "Public/HLVSDKPaymentManager.h"
#include "Values/Send.h"

namespace hlv::testing {
namespace {

/// The error of each call is an object of its own, and lives on.
const ErrorPtr& errorOf(std::size_t call) {
  static const auto errors = [] {
    std::vector<ErrorPtr> made;
    while (made.size() < Touched::ownersAtMost * Touched::callsAtMost)
      made.push_back(makeError("error " + std::to_string(made.size())));
    return made;
  }();
  return errors.at(call);
}

const char* thread(bool onMain) { return onMain ? "on main" : "off main"; }

std::string named(const std::shared_ptr<HLVSDKGuest>& guest) {
  return guest ? *guest->email() : "none";
}
std::string named(const std::shared_ptr<HLVSDKCreditCard>& card) {
  return card ? *card->halvoID() : "none";
}
std::string named(const std::shared_ptr<PLVCreditCardPaymentInstrument>& instrument) {
  return instrument ? instrument->identifier().value_or("unidentified") : "none";
}
std::string named(const NullableString& token) { return token.value_or("none"); }
std::string named(bool success) { return success ? "success" : "failure"; }
std::string named(const ErrorPtr& error) { return madeAs(error); }
std::string named(const NullableList<HLVSDKPLVPaymentInstrument>& pairs) {
  if (!pairs) return "no list";
  std::string list;
  for (const auto& pair : *pairs) {
    list += (list.empty() ? "" : ", ") + *pair->useCase() + " " + named(pair->paymentInstrument());
  }
  return list;
}

}  // namespace

/// A card that says what is done to it.
class Simulation::EnteredCard final : public FakeEnteredCard {
 public:
  EnteredCard(ScriptedHost* host, std::size_t operation)
      : host_(host), name_("card " + std::to_string(operation)) {
    useCase = "entered";
  }
  bool isValid(ErrorPtr* error) const override {
    host_->trace.push_back(name_ + " checks itself");
    return FakeEnteredCard::isValid(error);
  }
  void setExternalIdentifier(const NullableString& external) override {
    host_->trace.push_back(name_ + " is " + *external);
    // A request that was made before does not know it.
    host_->requestedCard = nullptr;
  }
  const std::string& name() const { return name_; }

 private:
  ScriptedHost* const host_;
  const std::string name_;
};

/// Any completion of an operation, which says what it gets.
struct Simulation::Completion {
  /// Null for a missing one.
  Simulation* simulation;
  std::size_t operation;
  std::shared_ptr<const char> life;

  template <class... Results>
  operator std::function<void(Results...)>() const {
    if (!simulation) return nullptr;
    return [own = *this](const Results&... results) {
      std::string said;
      ((said += (said.empty() ? "" : ", ") + named(results)), ...);
      own.simulation->completed(own.operation, said);
    };
  }
};

Simulation::Simulation() {
  Platform::install(platform_);
  Host::install(host_);
  host_->network->trace = &host_->trace;
  host_->forEachService([this](auto& held) {
    held.answerInside = [this](const auto& callback, const CallOf& of) {
      called(of.service, [callback](const Answer& answer, const ErrorPtr& error) {
        complete(callback, answer, error);
      });
    };
  });
}

Simulation::~Simulation() {
  Host::install(nullptr);
  Platform::install(nullptr);
}

const History& Simulation::play(const Scenario& scenario, std::size_t interferences,
                                Choices& choices) {
  scenario_ = &scenario;
  choices_ = &choices;
  interferencesLeft_ = interferences + scenario.interferences;
  begin();
  while (step()) {
  }
  end();
  return history_;
}

void Simulation::begin() {
  const auto& cast = Fixtures::shared();
  history_.clear();
  depth_ = 0;
  nextOperation_ = posts_ = 0;
  std::fill(std::begin(callsOf_), std::end(callsOf_), 0);
  platform_->owner = Event::nobody;
  managerReleased_ = synchronizerReleased_ = kitReleased_ = false;
  cast.guest->token.reset();
  host_->guest = scenario_->kitGuestHasToken ? cast.guest : cast.tokenless;
  host_->session->authorized = scenario_->authorized;
  host_->network->state = 1;
  if (scenario_->operations.front().kind != OperationKind::enable) {
    HLVSDKPayleven::setSharedInstance(HLVSDKPayleven::initWithConfiguration(nullptr, nullptr));
  }
  watchKit();
  host_->trace.clear();
}

void Simulation::end() {
  // Where a history was let be, blocks wait that nobody will run.
  platform_->main->drop();
  while (const auto queue = firstSerialQueue()) queue->drop();
  // The services still keep the callbacks that they have answered.
  HLVSDKPayleven::resetSharedInstance();
  host_->backend->lastAddRequest.reset();
  if (!kit_.expired() || !manager_.expired() || !synchronizer_.expired()) {
    say("something keeps the kit alive");
  }
  for (const auto& card : enteredCards_) {
    if (card.use_count() > 1) say("something keeps a card");
  }
  kit_.reset();
  manager_.reset();
  synchronizer_.reset();
  enteredCards_.clear();
  calls_.clear();
  if (completions_.use_count() > 1) say("something keeps a completion");
  platform_->serialQueues.clear();
  platform_->labelsMade.clear();
  writeDown();
}

// The moves

bool Simulation::step() {
  moves_.clear();
  addStarts(scenario_->bothThreads ? std::vector{true, false} : std::vector{true});
  if (platform_->main->waiting() > 0) moves_.push_back({Move::Kind::runMainQueue});
  if (firstSerialQueue()) moves_.push_back({Move::Kind::runSerialQueue, false});
  for (std::size_t call = 0; call < calls_.size(); ++call) {
    if (calls_[call].answered) continue;
    addAnswers(call, false);
    if (scenario_->bothThreads) addAnswers(call, true);
    moves_.push_back({.kind = Move::Kind::neverAnswer, .call = call, .error = calls_[call].id});
  }
  if (moves_.empty()) moves_.push_back({Move::Kind::end});
  addInterferences();

  numbers_.clear();
  for (const auto& move : moves_) numbers_.push_back(move.number());
  const auto chosen = choices_->chooseMove(numbers_);
  if (chosen == Choices::none || moves_[chosen].kind == Move::Kind::end) return false;
  transition_ = {numbers_[chosen], numbers_[chosen]};
  disturbed_.clear();
  performAlone(moves_[chosen]);
  if (!disturbed_.empty()) {
    transition_.canLeave = !disturbed_.front().meets(transition_.touched) ||
                           !disturbed_.back().meets(transition_.touched);
  }
  for (const auto& one : disturbed_) transition_.touched.add(one);
  return choices_->performed(transition_);
}

void Simulation::react(std::size_t call) {
  while (true) {
    moves_.clear();
    const bool waits = call != noCall && !calls_[call].answered;
    const bool answersAtOnce = waits && calls_[call].answers->size() == 1;
    if (!answersAtOnce) moves_.push_back({Move::Kind::goOn});
    if (waits) addAnswers(call, platform_->onMainThread);
    if (call == noCall) addStarts({platform_->onMainThread});
    if (!answersAtOnce) addInterferences();

    Move move = moves_[choices_->choose(moves_.size())];
    move.onMain = platform_->onMainThread;
    transition_.hadChoices |= moves_.size() > 1;
    transition_.whole = mixed(transition_.whole, move.number());
    if (move.kind == Move::Kind::goOn) return;
    perform(move);
  }
}

void Simulation::addStarts(std::vector<bool> threads) {
  if (nextOperation_ == scenario_->operations.size()) return;
  const auto& requests = scenario_->operations[nextOperation_].requests;
  for (std::size_t i = 0; i < requests.size(); ++i) {
    for (const bool onMain : threads) {
      moves_.push_back({.kind = Move::Kind::start,
                        .onMain = onMain,
                        .operation = nextOperation_,
                        .request = &requests[i],
                        .variant = i});
    }
  }
}

void Simulation::addAnswer(Move::Kind kind, std::size_t call, std::size_t answer, bool onMain) {
  moves_.push_back({.kind = kind,
                    .onMain = onMain,
                    .call = call,
                    .answer = &(*calls_[call].answers)[answer],
                    .error = calls_[call].id,
                    .variant = answer});
}

void Simulation::addAnswers(std::size_t call, bool onMain) {
  for (std::size_t i = 0; i < calls_[call].answers->size(); ++i) {
    addAnswer(Move::Kind::answer, call, i, onMain);
  }
}

void Simulation::addInterferences() {
  if (interferencesLeft_ == 0) return;
  for (std::size_t call = 0; call < calls_.size(); ++call) {
    if (!calls_[call].answered || !calls_[call].answer) continue;
    for (const auto answer : {std::size_t(0), calls_[call].answers->size() - 1}) {
      addAnswer(Move::Kind::answerAgain, call, answer, false);
    }
  }
  if (!kitReleased_) {
    if (!managerReleased_) moves_.push_back({Move::Kind::releaseManager});
    if (!synchronizerReleased_) moves_.push_back({Move::Kind::releaseSynchronizer});
    moves_.push_back({Move::Kind::releaseKit});
  }
  const auto& notifications = scenario_->notifications;
  for (std::size_t i = 0; i < notifications.size(); ++i) {
    moves_.push_back({.kind = Move::Kind::post, .notification = &notifications[i], .variant = i});
  }
}

void Simulation::perform(Move move) {
  writeDown();
  history_.push_back({true, move, depth_, {}});
  const auto events = history_.size();
  const auto outer = std::exchange(transition_.touched, {});
  ++depth_;
  if (move.isInterference()) --interferencesLeft_;
  const bool before = std::exchange(platform_->onMainThread, move.onMain);
  const auto owner = std::exchange(platform_->owner, ownerOf(move));
  auto onMain = platform_->main->waiting(), onSerial = waitingOnSerialQueues();
  if (move.kind == Move::Kind::runMainQueue) --onMain;
  if (move.kind == Move::Kind::runSerialQueue) --onSerial;
  execute(move, platform_->owner);
  const bool posts = platform_->main->waiting() > onMain || waitingOnSerialQueues() > onSerial;
  if (platform_->main->waiting() > onMain) transition_.touched.write(Touched::mainEnd);
  if (waitingOnSerialQueues() > onSerial) transition_.touched.write(Touched::serialEnd);
  writeDown();
  platform_->onMainThread = before;
  platform_->owner = owner;
  --depth_;
  // One that is silent does the same on every thread.
  const bool isAsAlone = move.onMain == (move.kind != Move::Kind::answerAgain) ||
                         (!posts && history_.size() == events);
  if (depth_ == 1 && move.isInterference() && isAsAlone) {
    disturbed_.push_back(std::exchange(transition_.touched, outer));
  } else {
    transition_.touched.add(outer);
  }
}

void Simulation::performAlone(const Move& move) {
  const bool mayDie = managerReleased_ || synchronizerReleased_ || kitReleased_ ||
                      (!looksForManager(move) && interferencesLeft_ > 0);
  const auto managers = manager_.use_count();
  const auto others = std::pair(kit_.use_count(), synchronizer_.use_count());
  onSerialQueue_ = move.kind == Move::Kind::runSerialQueue;
  perform(move);
  auto& touched = transition_.touched;
  if (mayDie && manager_.use_count() != managers) touched.write(Touched::manager);
  if (mayDie && std::pair(kit_.use_count(), synchronizer_.use_count()) != others) {
    touched.write(Touched::synchronizer);
  }
  watchKit();
  say(state());
  writeDown();
}

/// Those that do not, only let go.
bool Simulation::looksForManager(const Move& move) const {
  return move.kind != Move::Kind::neverAnswer &&
         !(move.kind == Move::Kind::answer && !calls_[move.call].joins);
}

std::size_t Simulation::ownerOf(const Move& move) {
  if (move.isOnCall()) return calls_[move.call].owner;
  if (move.kind == Move::Kind::start) return move.operation;
  if (move.kind == Move::Kind::runMainQueue) return platform_->main->nextOwner();
  if (move.kind == Move::Kind::runSerialQueue) return firstSerialQueue()->nextOwner();
  return move.notification ? scenario_->operations.size() + posts_++ : Event::nobody;
}

/// Makes the move, and notes what it touches whatever comes of it.
void Simulation::execute(const Move& move, std::size_t owner) {
  auto& touched = transition_.touched;
  if (looksForManager(move)) touched.read(Touched::manager);
  if (move.isInterference()) touched.write(Touched::interferences);
  switch (move.kind) {
    case Move::Kind::goOn:
    case Move::Kind::end:
      return;
    case Move::Kind::start:
      touched.read(Touched::synchronizer);
      touched.write(Touched::nextOperation, Touched::guestToken, Touched::network,
                    Touched::synchronizing, Touched::chainOf(owner));
      if (scenario_->operations[move.operation].kind == OperationKind::enable) {
        touched.write(Touched::manager, Touched::synchronizer);
      }
      ++nextOperation_;
      return start(move);
    case Move::Kind::runMainQueue:
      touched.write(Touched::mainBegin, Touched::cardsOf(owner), Touched::chainOf(owner));
      platform_->main->runOne();
      return;
    case Move::Kind::runSerialQueue:
      touched.read(Touched::synchronizer, Touched::guestToken);
      touched.write(Touched::serialBegin, Touched::synchronizing, Touched::cardsOf(owner),
                    Touched::chainOf(owner));
      firstSerialQueue()->runOne();
      return;
    case Move::Kind::answer:
    case Move::Kind::answerAgain:
    case Move::Kind::neverAnswer: {
      auto& call = calls_[move.call];
      touched.write(Touched::call(call.id));
      if (call.joins) {
        touched.write(call.service == Service::fetchCards ? Touched::cardsOf(owner)
                                                          : Touched::chainOf(owner));
      }
      call.answered = true;
      if (move.kind == Move::Kind::neverAnswer) {
        call.answer = nullptr;
        return;
      }
      // The call may be moved while it runs: another one may be made inside.
      const auto answer = call.answer;
      return answer(*move.answer, move.answer->fails ? errorOf(move.error) : nullptr);
    }
    case Move::Kind::releaseManager:
      touched.write(Touched::manager);
      managerReleased_ = true;
      return send(HLVSDKPayleven::sharedInstance(), &HLVSDKPayleven::setPaymentInstrumentManager,
                  nullptr);
    case Move::Kind::releaseSynchronizer:
      touched.write(Touched::synchronizer);
      synchronizerReleased_ = true;
      return send(HLVSDKPayleven::sharedInstance(),
                  &HLVSDKPayleven::setPaymentInstrumentsSynchronizer, nullptr);
    case Move::Kind::releaseKit:
      touched.write(Touched::manager, Touched::synchronizer);
      kitReleased_ = true;
      return HLVSDKPayleven::resetSharedInstance();
    case Move::Kind::post:
      touched.read(Touched::synchronizer, Touched::guestToken);
      touched.write(Touched::network, Touched::synchronizing);
      return post(*move.notification);
  }
}

// What the simulation does to the kit

void Simulation::start(const Move& move) {
  const auto& cast = Fixtures::shared();
  const auto& request = *move.request;
  const auto operation = move.operation;
  const auto guest = request.guest ? cast.guest : nullptr;
  cast.guest->token = request.guestToken;
  host_->network->state = request.network;
  const auto card = request.card ? std::make_shared<EnteredCard>(host_.get(), operation) : nullptr;
  if (card) {
    card->valid = request.valid;
    card->ownError = errorOf(operation);
    enteredCards_.push_back(card);
  }
  const Completion completion{request.completion ? this : nullptr, operation, completions_};
  using Manager = HLVSDKPaylevenPaymentInstrumentManager;
  using Synchronizer = HLVSDKPaylevenPaymentInstrumentsSynchronizer;
  // Nothing of the kit is held but the receiver, and that for no longer than its call.
  const auto synchronizer = [] {
    return std::dynamic_pointer_cast<Synchronizer>(
        send(HLVSDKPayleven::sharedInstance(), &HLVSDKPayleven::paymentInstrumentsSynchronizer));
  };
  switch (scenario_->operations[operation].kind) {
    case OperationKind::enable:
      return enable(request);
    case OperationKind::add:
      return HLVSDKPaymentManager::make()->addPaymentInstrument(card, cast.address, guest,
                                                                completion);
    case OperationKind::remove:
      return HLVSDKPaymentManager::make()->deletePaymentInstrumentWithID(
          request.id, request.useCase, guest, completion);
    case OperationKind::update:
      return HLVSDKPaymentManager::make()->updatePaymentInstrument(request.id, cast.address, guest,
                                                                   completion);
    case OperationKind::confirm:
      return send(std::dynamic_pointer_cast<Manager>(send(
                      HLVSDKPayleven::sharedInstance(), &HLVSDKPayleven::paymentInstrumentManager)),
                  &Manager::processAddedPaymentInstrument, card, request.confirmToken, completion);
    case OperationKind::fetchAll:
      return send(synchronizer(), &Synchronizer::fetchAllPaylevenPaymentInstrumentsForGuest, guest,
                  completion);
    case OperationKind::synchronize:
      if (const auto receiver = synchronizer()) {
        receiver->synchronizePaymentInstrumentsForGuest(guest, completion);
      }
      return;
  }
}

void Simulation::enable(const Request& request) {
  List<HLVSDKKitEntry> entries;
  for (const auto& key : request.kits) {
    const auto configuration =
        HLVSDKPaylevenKitConfiguration::configurationWithBlock([&](const auto& mutableOne) {
          if (key != "no key") mutableOne->setPaymentKey(key);
        });
    const bool isOurs = key != "another kit";
    entries.push_back(
        HLVSDKKitEntry::make(isOurs ? HLVSDKPayleven::kitClass() : HLVSDKKitClass(this),
                             key == "nothing" ? nullptr : configuration));
  }
  HLVSDKPayleven::enableWithConfiguration(HLVSDKConfiguration::make(entries));
}

void Simulation::post(const Posted& posted) {
  if (posted.name == "reachability") host_->network->state = posted.state;
  platform_->notificationCenter()->post(
      {posted.name,
       {{"isAuthorized", posted.state}, {"state", posted.state}, {"previous", posted.previous}}});
}

// What the kit does to the simulation

void Simulation::called(Service service,
                        std::function<void(const Answer&, const ErrorPtr&)> answer) {
  auto& line = host_->trace.back();
  if (service == Service::addCard) {
    for (const auto& card : enteredCards_) {
      if (card.get() == host_->requestedCard) line += ", " + card->name();
    }
    if (host_->requestedAddress == Fixtures::shared().address.get()) line += " at the address";
  }
  line += std::string(", ") + thread(platform_->onMainThread);
  const auto owner = platform_->owner % Touched::ownersAtMost;
  const auto id = Touched::idOfCall(owner, callsOf_[owner]++);
  transition_.touched.write(Touched::callsOf(owner));
  // Nobody waits for the removals of a synchronisation.
  const bool joins = service != Service::removeInstrument || !onSerialQueue_;
  calls_.push_back({&scenario_->replies.at(service), std::move(answer), service, id, joins,
                    joins ? owner : owner + Touched::ownersAtMost * (id + 1)});
  react(calls_.size() - 1);
}

void Simulation::completed(std::size_t operation, const std::string& results) {
  say("completes " + std::to_string(operation) + ", " + thread(platform_->onMainThread) + ": " +
      results);
  react(noCall);
}

void Simulation::watchKit() {
  const auto kit = HLVSDKPayleven::sharedInstance();
  if (!kit || kit == kit_.lock()) return;
  kit_ = kit;
  manager_ = std::dynamic_pointer_cast<HLVSDKPaylevenPaymentInstrumentManager>(
      kit->paymentInstrumentManager());
  synchronizer_ = std::dynamic_pointer_cast<HLVSDKPaylevenPaymentInstrumentsSynchronizer>(
      kit->paymentInstrumentsSynchronizer());
}

std::shared_ptr<ManualPlatform::ManualQueue> Simulation::firstSerialQueue() const {
  for (const auto& queue : platform_->serialQueues) {
    if (auto alive = queue.lock(); alive && alive->waiting() > 0) return alive;
  }
  return nullptr;
}

std::size_t Simulation::waitingOnSerialQueues() const {
  std::size_t waiting = 0;
  for (const auto& queue : platform_->serialQueues) {
    if (const auto alive = queue.lock()) waiting += alive->waiting();
  }
  return waiting;
}

std::string Simulation::state() const {
  std::string state = kit_.expired() ? "-" : "K";
  const auto manager = manager_.lock();
  const auto synchronizer = synchronizer_.lock();
  state += !manager ? '-' : manager->isConnectionAvailable() ? 'M' : 'm';
  state += !synchronizer ? '-' : synchronizer->isSynchronizing() ? 'S' : 's';
  state += std::to_string(platform_->main->waiting());
  state += '/';
  state += std::to_string(waitingOnSerialQueues());
  return state;
}

void Simulation::writeDown() {
  for (auto& line : host_->trace) {
    history_.push_back({false, {}, depth_, std::move(line), platform_->owner});
  }
  host_->trace.clear();
}

}  // namespace hlv::testing
