#include "Tests/Explorer/Choices.h"

#include <algorithm>
#include <sstream>

#include "Tests/Explorer/LiveBlocks.h"

namespace hlv::testing {
namespace {

/// Histories with fewer moves fall to a shard by all of them.
constexpr std::size_t movesThatChooseAShard = 3;

}  // namespace

DepthFirst::DepthFirst(Orders orders, Shard shard) : orders_(orders), shard_(shard) {}

std::optional<DepthFirst> DepthFirst::along(const std::string& path) {
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

bool DepthFirst::Branch::advance() {
  do ++taken;
  while (taken < count && !asleep.empty() && asleep[taken]);
  return taken < count;
}

std::size_t DepthFirst::choose(std::size_t count) {
  if (count == 1) return 0;
  const Uncounted ours;
  if (position_ == branches_.size()) branches_.push_back({0, count});
  auto& branch = branches_[position_++];
  branch.count = count;
  // A path typed by hand may ask for more than there is.
  return std::min(branch.taken, count - 1);
}

std::size_t DepthFirst::chooseMove(const std::vector<std::uint64_t>& moves) {
  const auto& asleep = points_.back().asleep;
  const bool isNew = moves_ + 1 == points_.size() && position_ == branches_.size();
  if (!isNew || asleep.empty()) return choose(moves.size());
  const Uncounted ours;
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

bool DepthFirst::performed(const Transition& transition) {
  if (++moves_ < points_.size()) return true;
  const Uncounted ours;
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

bool DepthFirst::next() {
  const Uncounted ours;
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

std::string DepthFirst::path() const {
  std::string path;
  for (const auto& branch : branches_) {
    if (!path.empty()) path += '.';
    path += std::to_string(branch.taken);
  }
  return path;
}

}  // namespace hlv::testing
