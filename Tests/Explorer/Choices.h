// Who decides what happens next in a history.
//
// Threading: one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "Tests/Explorer/Touched.h"

namespace hlv::testing {

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

  explicit DepthFirst(Orders orders = Orders::all, Shard shard = {});
  /// Begins with the path that `path()` printed; nothing if it is no path.
  static std::optional<DepthFirst> along(const std::string& path);

  std::size_t choose(std::size_t count) override;
  std::size_t chooseMove(const std::vector<std::uint64_t>& moves) override;
  bool performed(const Transition& transition) override;
  /// Whether the last history was played to its end, and falls to the shard.
  bool isComplete() const { return !cut_ && isMine(); }
  /// Goes on to the next path; false when there is none.
  bool next();
  /// The path so far, as numbers with points between them.
  std::string path() const;

 private:
  struct Branch {
    std::size_t taken, count;
    std::vector<bool> asleep = {};
    /// Goes on to the next one that is awake; false when there is none.
    bool advance();
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
