// Who decides what happens next in a history, and what a move touched, as far as another one can
// see it.
//
// Threading: one thread.
#pragma once

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace hlv::testing {

/// Two moves of which neither writes what the other reads or writes may change places, and nobody
/// can see which came first.
struct Touched {
  static constexpr std::size_t ownersAtMost = 10, callsAtMost = 14;
  using Things = std::bitset<256>;

  enum Thing : std::size_t {
    /// Which operation is next, and how many interferences are left.
    nextOperation,
    interferences,
    /// Of the one guest that every operation gets.
    guestToken,
    /// With the flag that the manager keeps of it.
    network,
    /// Who holds them; with the synchroniser, the kit.
    manager,
    synchronizer,
    /// The synchroniser's flag.
    synchronizing,
    /// A queue that is not empty has two ends.
    mainBegin,
    mainEnd,
    serialBegin,
    serialEnd,
    firstOfOwner
  };
  /// An owner is an operation, or a notification that may start a synchronisation, or what only
  /// counts as its answer: by the last digit. What it has: a join or a chain of callbacks, the
  /// cards that its synchronisation fetches, its number of calls.
  static Thing chainOf(std::size_t owner) { return of(owner, 0); }
  static Thing cardsOf(std::size_t owner) { return of(owner, 1); }
  static Thing callsOf(std::size_t owner) { return of(owner, 2); }
  /// A call, by the number that is the same in every history.
  static Thing call(std::size_t id) { return Thing(firstOfOwner + 3 * ownersAtMost + id); }
  static std::size_t idOfCall(std::size_t owner, std::size_t number) {
    return owner * callsAtMost + number;
  }

  static Thing of(std::size_t owner, std::size_t which) {
    return Thing(firstOfOwner + 3 * (owner % ownersAtMost) + which);
  }

  Things reads, writes;

  template <class... Of>
  void write(Of... things) {
    (writes.set(things), ...);
  }
  template <class... Of>
  void read(Of... things) {
    (reads.set(things), ...);
  }
  void add(const Touched& other) {
    reads |= other.reads;
    writes |= other.writes;
  }
  bool meets(const Touched& other) const {
    return (writes & (other.reads | other.writes)).any() || (reads & other.writes).any();
  }
};

/// Makes one number of two.
inline std::uint64_t mixed(std::uint64_t one, std::uint64_t other) {
  one = (one ^ other) * 0x9E3779B97F4A7C15U;
  return one ^ (one >> 29);
}

/// A move that nothing surrounds, with what was chosen inside it, and what both touched. The
/// numbers are the same in every history in which the same happens.
struct Transition {
  std::uint64_t move = 0, whole = 0;
  bool hadChoices = false;
  /// Whether the first interference inside the move could as well come before it, or the last one
  /// after it.
  bool canLeave = false;
  Touched touched = {};
};

/// Makes every choice of a history: which answer comes next, on which thread, with what in it.
class Choices {
 public:
  static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

  virtual ~Choices() = default;
  /// A number from 0 to `count` - 1. `count` is at least 1.
  virtual std::size_t choose(std::size_t count) = 0;
  /// The position of one of the moves, or `none` when the history need not go on.
  virtual std::size_t chooseMove(const std::vector<std::uint64_t>& moves) {
    return choose(moves.size());
  }
  /// Takes what the chosen move did; false when the history need not go on.
  virtual bool performed(const Transition&) { return true; }
};

/// A part of all histories: those whose first moves fall to it. The parts are disjoint and
/// complete.
struct Shard {
  std::size_t number = 0, of = 1;
};

/// Walks through all choices, depth first. The simulation behind them must always offer the same
/// choices after the same ones.
///
/// Of histories that differ only in the order of neighbours that touch nothing in common, it walks
/// through one: what was played at a point sleeps in the branches played after it there, until
/// something that it depends on happens.
class DepthFirst final : public Choices {
 public:
  enum class Orders { all, distinct };

  explicit DepthFirst(Orders orders = Orders::all, Shard shard = {})
      : orders_(orders), shard_(shard) {}
  /// Begins with the path that `path()` printed; nothing if it is no path.
  static std::optional<DepthFirst> along(const std::string& path) {
    DepthFirst choices;
    std::istringstream numbers(path);
    for (std::string number; std::getline(numbers, number, '.');) {
      if (number.empty() || number.size() > 4 ||
          number.find_first_not_of("0123456789") != std::string::npos) {
        return std::nullopt;
      }
      choices.branches_.push_back({std::stoul(number), 0});
    }
    return choices;
  }

  std::size_t choose(std::size_t count) override {
    if (count == 1) return 0;
    if (position_ == branches_.size()) branches_.push_back({0, count});
    auto& branch = branches_[position_++];
    branch.count = count;
    // A path typed by hand may ask for more than there is.
    return std::min(branch.taken, count - 1);
  }
  std::size_t chooseMove(const std::vector<std::uint64_t>& moves) override {
    const auto& asleep = points_.back().asleep;
    const bool isNew = moves_ + 1 == points_.size() && position_ == branches_.size();
    if (!isNew || asleep.empty()) return choose(moves.size());
    // One that chose inside wakes to choose again, and is recognised when it has chosen the same.
    Branch branch{none, moves.size(), std::vector<bool>(moves.size())};
    for (std::size_t i = 0; i < moves.size(); ++i) {
      branch.asleep[i] = std::any_of(asleep.begin(), asleep.end(), [&](const auto& one) {
        return one.move == moves[i] && !one.hadChoices;
      });
    }
    if (!branch.advance()) {
      cut_ = true;
      return none;
    }
    if (moves.size() == 1) return 0;
    branches_.push_back(std::move(branch));
    return branches_[position_++].taken;
  }
  bool performed(const Transition& transition) override {
    if (++moves_ < points_.size()) return true;
    auto& point = points_.back();
    Point next{position_, point.path};
    if (moves_ <= movesThatChooseAShard) next.path = mixed(point.path, transition.whole);
    if (orders_ == Orders::distinct) {
      const auto isSame = [&](const auto& one) { return one.whole == transition.whole; };
      cut_ = transition.canLeave || std::any_of(point.asleep.begin(), point.asleep.end(), isSame);
      if (cut_) return false;
      for (const auto* sleepers : {&point.asleep, &point.played}) {
        std::copy_if(sleepers->begin(), sleepers->end(), std::back_inserter(next.asleep),
                     [&](const auto& one) { return !one.touched.meets(transition.touched); });
      }
      point.current = transition;
    }
    points_.push_back(std::move(next));
    return moves_ < movesThatChooseAShard || isMine();
  }
  /// Whether the last history was played to its end, and falls to the shard.
  bool isComplete() const { return !cut_ && isMine(); }
  /// Goes on to the next path; false when there is none.
  bool next() {
    branches_.resize(position_);
    position_ = moves_ = 0;
    cut_ = false;
    while (!branches_.empty() && !branches_.back().advance()) branches_.pop_back();
    if (branches_.empty()) return false;
    while (points_.back().position >= branches_.size()) points_.pop_back();
    auto& point = points_.back();
    if (point.current) point.played.push_back(*point.current);
    point.current.reset();
    return true;
  }
  /// The path so far, as numbers with points between them.
  std::string path() const {
    std::string path;
    for (const auto& branch : branches_) {
      if (!path.empty()) path += '.';
      path += std::to_string(branch.taken);
    }
    return path;
  }

 private:
  struct Branch {
    std::size_t taken, count;
    std::vector<bool> asleep = {};
    /// Goes on to the next one that is awake; false when there is none.
    bool advance() {
      do ++taken;
      while (taken < count && !asleep.empty() && asleep[taken]);
      return taken < count;
    }
  };
  /// A point between two moves that nothing surrounds.
  struct Point {
    /// The number of choices before it.
    std::size_t position = 0;
    /// The moves that lead to it, as one number.
    std::uint64_t path = 0;
    std::vector<Transition> asleep = {}, played = {};
    std::optional<Transition> current = std::nullopt;
  };

  /// Histories with fewer moves fall to a shard by all of them.
  static constexpr std::size_t movesThatChooseAShard = 3;

  bool isMine() const { return points_.back().path % shard_.of == shard_.number; }

  Orders orders_;
  Shard shard_;
  std::vector<Branch> branches_;
  std::size_t position_ = 0;
  std::vector<Point> points_ = std::vector<Point>(1);
  /// How many moves this history has made.
  std::size_t moves_ = 0;
  bool cut_ = false;
};

}  // namespace hlv::testing
