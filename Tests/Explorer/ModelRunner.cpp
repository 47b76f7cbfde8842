#include "Tests/Explorer/ModelRunner.h"

#include <utility>

namespace hlv::testing {

void ModelRunner::Join::leave() {
  if (--entered_ == 0 && then_) std::exchange(then_, nullptr)();
}

void ModelRunner::Join::whenEmpty(std::function<void()> then) {
  if (entered_ == 0) return then();
  then_ = std::move(then);
}

void ModelRunner::bringToLife() {
  enabledOnce_ = true;
  connected_ = false;
  kitSeen_ = kit_ = std::make_shared<const char>();
  managerSeen_ = manager_ = std::make_shared<const char>();
  synchronizerSeen_ = synchronizer_ = std::make_shared<bool>(false);
}

void ModelRunner::expect(const Text& line) {
  if (violation_) return;
  if (position_ < history_.size() && !history_[position_].isMove &&
      history_[position_].output == line) {
    ++position_;
    return;
  }
  violation_ = {position_, line};
}

void ModelRunner::call(const Text& line, Continuation then, Replies replies) {
  waiting_.push_back({std::move(then), replies});
  expect(line + (onMain_ ? ", on main" : ", off main"));
  takeMoves();
}

void ModelRunner::onMainThread(std::function<void(bool posted)> work) {
  if (onMain_) return work(false);
  postToMainQueue([work = std::move(work)] { work(true); });
}

void ModelRunner::complete(const Asking& who, const Text& results) {
  completeBuilt(who, [results](bool) { return results; });
}

void ModelRunner::completeBuilt(const Asking& who, std::function<Text(bool posted)> results) {
  if (!who.request->completion) return;
  onMainThread([=, this](bool posted) { completeHere(who, results(posted)); });
}

void ModelRunner::completeHere(const Asking& who, const Text& results) {
  if (!who.request->completion) return;
  expect("completes " + std::to_string(who.operation) + (onMain_ ? ", on main: " : ", off main: ") +
         results);
  takeMoves();
}

void ModelRunner::log(int level, const Text& format, const NullableString& argument,
                      const Text& function) {
  for (const Text logger : {"remote ", "console "}) {
    expect(logger + std::to_string(level) + " \"" + format + "\"" +
           (argument ? " <" + *argument + ">" : "") + " at " + function);
  }
}

std::optional<ModelRunner::Violation> ModelRunner::follow() {
  takeMoves();
  if (!violation_ && position_ < history_.size()) violation_ = {position_, "nothing"};
  return violation_;
}

/// Takes the moves that the simulation makes here.
void ModelRunner::takeMoves() {
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

void ModelRunner::take(const Move& move) {
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

ModelRunner::Text ModelRunner::state() const {
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

}  // namespace hlv::testing
