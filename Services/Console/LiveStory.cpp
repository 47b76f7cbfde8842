#include "Services/Console/LiveStory.h"

#include <algorithm>
#include <utility>

#include "Services/Console/ConsoleRecords.h"

namespace hlv::services {
namespace {

constexpr std::size_t operationsAtFirst = 50;

/// JSON has no line breaks, which would end the event.
std::string eventOf(const std::string& name, const std::string& data) {
  return "event: " + name + "\ndata: " + data + "\n\n";
}

}  // namespace

std::string LiveStory::next() {
  // Looked at first, so that what comes meanwhile is found the next time.
  const auto changes = sandbox_->changes();
  if (hasBegun_ && changes == changes_) return "";
  auto news = newStory() + newTruth();
  changes_ = changes;
  hasBegun_ = true;
  return news;
}

std::string LiveStory::newStory() {
  const auto story =
      hasBegun_ ? sandbox_->journal().since(told_) : sandbox_->journal().last(operationsAtFirst);
  if (hasBegun_ && story.empty()) return "";
  for (const auto& operation : story) {
    for (const auto& event : operation.events) told_ = std::max(told_, event.number);
  }
  return eventOf("story", textOf({{"whole", !hasBegun_}, {"operations", jsonOf(story)}}));
}

std::string LiveStory::newTruth() {
  auto truth = textOf(truthOf(*sandbox_));
  if (truth == truth_) return "";
  truth_ = std::move(truth);
  return eventOf("truth", truth_);
}

}  // namespace hlv::services
