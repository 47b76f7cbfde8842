// The real kit in a simulation in which everything that decides order is a choice: which answer
// comes next and with what in it, on which thread, inside the call, twice or never; when a queue
// advances; when a notification is posted; when something is released, also inside a call or a
// completion.
//
// Threading: one thread plays all of them.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Public/HLVSDKPayleven.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"
#include "Tests/Explorer/Choices.h"
#include "Tests/Explorer/History.h"
#include "Tests/Support/ManualPlatform.h"
#include "Tests/Support/ScriptedHost.h"

namespace hlv::testing {

class Simulation {
 public:
  Simulation();
  ~Simulation();
  Simulation(const Simulation&) = delete;
  Simulation& operator=(const Simulation&) = delete;

  /// Plays one history, to its end or until `choices` lets it be. `interferences` says how many it
  /// may hold beyond those of the scenario. Whatever is left over at its end stands in the history
  /// as a line. The result is valid until the next call.
  const History& play(const Scenario& scenario, std::size_t interferences, Choices& choices);

 private:
  struct Call {
    const Answers* answers;
    std::function<void(const Answer&, const ErrorPtr&)> answer;
    Service service;
    /// The number that is the same in every history.
    std::size_t id;
    /// Whether anything that the call's owner has waits for the answer, and whose work the answer
    /// is.
    bool joins;
    std::size_t owner;
    bool answered = false;
  };
  class EnteredCard;
  struct Completion;
  static constexpr std::size_t noCall = static_cast<std::size_t>(-1);

  void called(Service service, std::function<void(const Answer&, const ErrorPtr&)> answer);
  void completed(std::size_t operation, const std::string& results);

  void begin();
  void end();
  bool step();
  /// Lets the simulation act inside a call to a service, or inside a completion.
  void react(std::size_t call);
  void addStarts(std::vector<bool> threads);
  void addAnswer(Move::Kind kind, std::size_t call, std::size_t answer, bool onMain);
  void addAnswers(std::size_t call, bool onMain);
  void addInterferences();

  void perform(Move move);
  /// Makes the move that nothing surrounds.
  void performAlone(const Move& move);
  std::size_t ownerOf(const Move& move);
  bool looksForManager(const Move& move) const;
  void execute(const Move& move, std::size_t owner);
  void start(const Move& move);
  void enable(const Request& request);
  void post(const Posted& posted);

  void watchKit();
  void writeDown();
  std::string state() const;
  std::size_t waitingOnSerialQueues() const;
  /// The first one with a block; nothing if none has one.
  std::shared_ptr<ManualPlatform::ManualQueue> firstSerialQueue() const;
  void say(std::string line) { host_->trace.push_back(std::move(line)); }

  const std::shared_ptr<ManualPlatform> platform_ = std::make_shared<ManualPlatform>();
  const std::shared_ptr<ScriptedHost> host_ = std::make_shared<ScriptedHost>();
  const Scenario* scenario_ = nullptr;
  Choices* choices_ = nullptr;
  std::size_t interferencesLeft_ = 0;

  History history_;
  std::size_t depth_ = 0;
  std::vector<Move> moves_;
  std::vector<std::uint64_t> numbers_;
  /// What the move that nothing surrounds has chosen and touched so far.
  Transition transition_;
  /// What each interference inside it has touched that would do the same outside.
  std::vector<Touched> disturbed_;
  bool onSerialQueue_ = false;
  std::vector<Call> calls_;
  std::size_t callsOf_[Touched::ownersAtMost] = {};
  std::size_t posts_ = 0;
  std::size_t nextOperation_ = 0;
  bool managerReleased_ = false, synchronizerReleased_ = false, kitReleased_ = false;
  std::vector<std::shared_ptr<EnteredCard>> enteredCards_;
  /// Held by every completion.
  const std::shared_ptr<const char> completions_ = std::make_shared<const char>();
  std::weak_ptr<HLVSDKPayleven> kit_;
  std::weak_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager_;
  std::weak_ptr<HLVSDKPaylevenPaymentInstrumentsSynchronizer> synchronizer_;
};

}  // namespace hlv::testing
