// What the kit promises, completed once more and without a line of the kit's own code.
// ReferenceModel.cpp is the place to read what each operation does, in which order, on which thread
// and in which words. Here are the books that it keeps: whose turn it is on which queue, which
// answers are still owed, and who is alive.
//
// Threading: one thread.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Tests/Explorer/History.h"

namespace hlv::testing {

class ReferenceModel {
 public:
  /// Where in the history something is wrong, and what should stand there.
  struct Violation {
    std::size_t event;
    std::string expected;
  };
  /// The first thing in the history that is not as it must be, or nothing.
  static std::optional<Violation> examine(const Scenario& scenario, const History& history);

 private:
  using Text = std::string;
  /// Lives as long as somebody holds it.
  using Life = std::shared_ptr<const char>;

  /// Which operation it is, how it was asked for, and the manager that serves it, not kept.
  struct Asking {
    std::size_t operation;
    const Request* request;
    std::weak_ptr<const char> manager;

    Text card() const { return "card " + std::to_string(operation); }
    Text guest(const char* otherwise) const { return request->guest ? "guest" : otherwise; }
  };
  /// The request of the kit itself, whose completion says nothing.
  static constexpr std::size_t byTheKit = static_cast<std::size_t>(-1);

  /// What a service brought. Errors are completed by how they were made, and "none" is no error.
  struct Brought {
    const Answer& answer;
    Text error;

    bool failed() const { return error != "none"; }
    Text guest() const { return answer.guest ? *answer.guest->emailText : "none"; }
    Text card() const { return answer.card ? *answer.card->id : "none"; }
  };
  using Continuation = std::function<void(const Brought&)>;
  /// The kit takes one reply of a service; an app whose completion a service has got takes them
  /// all.
  enum class Replies { once, always };

  /// Answers that wait for one another. One that never comes frees what would be done then.
  class Join {
   public:
    void enter() { ++entered_; }
    void leave() {
      if (--entered_ == 0 && then_) std::exchange(then_, nullptr)();
    }
    void whenEmpty(std::function<void()> then) {
      if (entered_ == 0) return then();
      then_ = std::move(then);
    }

   private:
    std::size_t entered_ = 0;
    std::function<void()> then_;
  };

  struct Waiting {
    Continuation then;
    Replies replies;
  };

  ReferenceModel(const Scenario& scenario, const History& history)
      : scenario_(scenario), history_(history) {}

  // What the kit does.

  using Instrument = std::shared_ptr<FakeInstrument>;
  /// What a confirmation ends with.
  using Confirmed =
      std::function<void(const NullableString& token, const Instrument&, const Text&)>;
  struct Fetched;

  void start(OperationKind kind, const Asking& who);
  void handle(const Posted& notification);

  void enable(const Request& request);
  void add(const Asking& who);
  void addFirst(const Asking& who);
  void addFurther(const Asking& who);
  void confirm(const Asking& who, const NullableString& token, Confirmed then);
  void remove(const Asking& who);
  void update(const Asking& who);
  void synchronize(const Asking& who);
  void fetchAll(const Asking& who, std::function<void(const std::shared_ptr<Fetched>&)> then);
  void finish(const Asking& who, const Fetched& fetched, bool& synchronizing);

  // The books.

  /// Follows to the end.
  std::optional<Violation> follow() {
    takeMoves();
    if (!violation_ && position_ < history_.size()) violation_ = {position_, "nothing"};
    return violation_;
  }

  void bringToLife() {
    enabledOnce_ = true;
    connected_ = false;
    kitSeen_ = kit_ = std::make_shared<const char>();
    managerSeen_ = manager_ = std::make_shared<const char>();
    synchronizerSeen_ = synchronizer_ = std::make_shared<bool>(false);
  }
  /// The kit says or does this now.
  void expect(const Text& line) {
    if (violation_) return;
    if (position_ < history_.size() && !history_[position_].isMove &&
        history_[position_].output == line) {
      ++position_;
      return;
    }
    violation_ = {position_, line};
  }
  /// It makes this error now.
  const Text& made(const Text& error) {
    expect("makes " + error);
    return error;
  }
  /// It calls a service, on the thread that it is on.
  void call(const Text& line, Continuation then, Replies replies = Replies::once) {
    waiting_.push_back({std::move(then), replies});
    expect(line + (onMain_ ? ", on main" : ", off main"));
    takeMoves();
  }
  /// The main-thread rule: now, if this is the main thread, and otherwise posted.
  void onMainThread(std::function<void(bool posted)> work) {
    if (onMain_) return work(false);
    postToMainQueue([work = std::move(work)] { work(true); });
  }
  void postToMainQueue(std::function<void()> work) { mainQueue_.push_back(std::move(work)); }
  void postToSerialQueue(std::function<void()> work) { serialQueue_.push_back(std::move(work)); }
  /// Completes by that rule. A missing completion is skipped, and builds and posts nothing.
  void complete(const Asking& who, const Text& results) {
    completeBuilt(who, [results](bool) { return results; });
  }
  void completeBuilt(const Asking& who, std::function<Text(bool posted)> results) {
    if (!who.request->completion) return;
    onMainThread([=, this](bool posted) { completeHere(who, results(posted)); });
  }
  /// Completes here and now.
  void completeHere(const Asking& who, const Text& results) {
    if (!who.request->completion) return;
    expect("completes " + std::to_string(who.operation) +
           (onMain_ ? ", on main: " : ", off main: ") + results);
    takeMoves();
  }
  /// Writes to the remote logger and then to the console, with the same words.
  void log(int level, const Text& format, const NullableString& argument, const Text& function) {
    for (const Text logger : {"remote ", "console "}) {
      expect(logger + std::to_string(level) + " \"" + format + "\"" +
             (argument ? " <" + *argument + ">" : "") + " at " + function);
    }
  }

  /// Takes the moves that the simulation makes here.
  void takeMoves() {
    while (!violation_ && position_ < history_.size() && history_[position_].isMove &&
           history_[position_].depth == depth_) {
      const auto& move = history_[position_++].move;
      const bool before = std::exchange(onMain_, move.onMain);
      ++depth_;
      take(move);
      --depth_;
      onMain_ = before;
      if (depth_ == 0) expect(state());
    }
  }
  void take(const Move& move) {
    const auto runFirst = [](auto& queue) {
      if (queue.empty()) return;
      const auto block = std::move(queue.front());
      queue.pop_front();
      block();
    };
    switch (move.kind) {
      case Move::Kind::goOn:
      case Move::Kind::end:
        return;
      case Move::Kind::start:
        guestToken_ = move.request->guestToken;
        network_ = move.request->network;
        return start(scenario_.operations[move.operation].kind,
                     {move.operation, move.request, manager_});
      case Move::Kind::runMainQueue:
        return runFirst(mainQueue_);
      case Move::Kind::runSerialQueue:
        return runFirst(serialQueue_);
      case Move::Kind::answer:
      case Move::Kind::answerAgain: {
        const auto [then, replies] = waiting_[move.call];
        if (replies == Replies::once) waiting_[move.call].then = nullptr;
        const Text error = move.answer->fails ? "error " + std::to_string(move.error) : "none";
        return then ? then({*move.answer, error}) : void();
      }
      case Move::Kind::neverAnswer:
        waiting_[move.call].then = nullptr;
        return;
      case Move::Kind::releaseManager:
        return manager_.reset();
      case Move::Kind::releaseSynchronizer:
        return synchronizer_.reset();
      case Move::Kind::releaseKit:
        kit_.reset();
        manager_.reset();
        synchronizer_.reset();
        enabledOnce_ = false;
        return;
      case Move::Kind::post:
        return handle(*move.notification);
    }
  }
  Text state() const {
    const auto synchronizing = synchronizerSeen_.lock();
    return Text(kitSeen_.expired() ? "-" : "K") +
           (managerSeen_.expired() ? "-"
            : connected_           ? "M"
                                   : "m") +
           (!synchronizing   ? "-"
            : *synchronizing ? "S"
                             : "s") +
           std::to_string(mainQueue_.size()) + "/" + std::to_string(serialQueue_.size());
  }

  const Scenario& scenario_;
  const History& history_;
  std::int64_t network_ = 1;
  NullableString guestToken_;
  /// What the app holds; an object whose last holder goes is seen no more.
  Life kit_, manager_;
  std::weak_ptr<const char> kitSeen_, managerSeen_;
  /// A synchroniser is its flag: one that outlives its kit clears its own.
  std::shared_ptr<bool> synchronizer_;
  std::weak_ptr<bool> synchronizerSeen_;
  bool enabledOnce_ = false, connected_ = false;

  std::size_t position_ = 0;
  std::size_t depth_ = 0;
  std::optional<Violation> violation_;
  bool onMain_ = true;
  std::deque<std::function<void()>> mainQueue_, serialQueue_;
  std::vector<Waiting> waiting_;
};

}  // namespace hlv::testing
