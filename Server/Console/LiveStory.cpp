#include "Server/Console/LiveStory.h"

#include <algorithm>
#include <utility>

#include "Server/Console/ConsoleRecords.h"

namespace hlv::server {
namespace {

constexpr std::size_t operationsAtFirst = 50;

/// JSON has no line breaks, which would end the event.
std::string eventOf(const std::string& name, const std::string& data) {
  return "event: " + name + "\ndata: " + data + "\n\n";
}

}  // namespace

std::string LiveStory::next() {
  // Looked at first, so that what comes meanwhile is found the next time.
  const auto changes = world_->store().changes();
  if (hasBegun_ && changes == changes_) return "";
  auto news = newStory() + newTruth();
  changes_ = changes;
  hasBegun_ = true;
  return news;
}

std::string LiveStory::newStory() {
  const auto story = hasBegun_ ? journal_.since(told_) : journal_.last(operationsAtFirst);
  if (hasBegun_ && story.empty()) return "";
  for (const auto& operation : story) {
    for (const auto& event : operation.events) told_ = std::max(told_, event.number);
  }
  return eventOf("story", sandbox::textOf({{"whole", !hasBegun_}, {"operations", jsonOf(story)}}));
}

std::string LiveStory::newTruth() {
  auto truth = sandbox::textOf(world_->store().read(truthOf));
  if (truth == truth_) return "";
  truth_ = std::move(truth);
  return eventOf("truth", truth_);
}

}  // namespace hlv::server
