#include "Tests/Explorer/Choices.h"

#include <algorithm>
#include <sstream>

namespace hlv::testing {

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

std::size_t DepthFirst::choose(std::size_t count) {
  if (count == 1) return 0;
  if (position_ == branches_.size()) branches_.push_back({0, count});
  auto& branch = branches_[position_++];
  branch.count = count;
  // A path typed by hand may ask for more than there is.
  return std::min(branch.taken, count - 1);
}

bool DepthFirst::next() {
  branches_.resize(position_);
  position_ = 0;
  while (!branches_.empty() && branches_.back().taken + 1 >= branches_.back().count) {
    branches_.pop_back();
  }
  if (branches_.empty()) return false;
  ++branches_.back().taken;
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
