// Who decides what happens next in a history.
//
// Threading: one thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace hlv::testing {

/// Makes every choice of a history: which answer comes next, on which thread, with what in it.
class Choices {
 public:
  virtual ~Choices() = default;
  /// A number from 0 to `count` - 1. `count` is at least 1.
  virtual std::size_t choose(std::size_t count) = 0;
};

/// Walks through all choices, depth first. The simulation behind them must always offer the same
/// choices after the same ones.
class DepthFirst final : public Choices {
 public:
  DepthFirst() = default;
  /// Begins with the path that `path()` printed; nothing if it is no path.
  static std::optional<DepthFirst> along(const std::string& path);

  std::size_t choose(std::size_t count) override;
  /// Goes on to the next path; false when there is none.
  bool next();
  /// The path so far, as numbers with points between them.
  std::string path() const;

 private:
  struct Branch {
    std::size_t taken, count;
  };
  std::vector<Branch> branches_;
  std::size_t position_ = 0;
};

}  // namespace hlv::testing
