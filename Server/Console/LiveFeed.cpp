#include "Server/Console/LiveFeed.h"

#include <algorithm>
#include <utility>

#include "Sandbox/JSON/JournalRecords.h"

namespace hlv::server {
namespace {

constexpr std::size_t operationsAtFirst = 50;
/// All that the log keeps.
constexpr std::int64_t requestsAtFirst = 1'000;

/// JSON has no line breaks, which would end the event.
std::string eventOf(const std::string& name, const std::string& data) {
  return "event: " + name + "\ndata: " + data + "\n\n";
}

}  // namespace

std::string LiveFeed::next() {
  // Read first, so that what comes meanwhile is found the next time.
  const auto changes = world_->store().changes();
  if (changes == changes_ && !hasMore_) return "";
  startAgainAfterRestore();
  auto news = newEvents() + newData() + newRequests();
  changes_ = changes;
  hasBegun_ = true;
  return news;
}

void LiveFeed::startAgainAfterRestore() {
  const auto last = world_->store().read([](sandbox::Database& database) {
    return database.integer("SELECT coalesce(max(number), 0) FROM events");
  });
  if (last >= lastEvent_) return;
  hasBegun_ = false;
  lastEvent_ = 0;
}

std::string LiveFeed::newEvents() {
  const auto timeline = hasBegun_ ? journal_.since(lastEvent_) : journal_.last(operationsAtFirst);
  if (hasBegun_ && timeline.empty()) return "";
  for (const auto& operation : timeline) {
    for (const auto& event : operation.events) lastEvent_ = std::max(lastEvent_, event.number);
  }
  return eventOf("timeline", sandbox::textOf({{"whole", !hasBegun_},
                                              {"operations", sandbox::listOf(timeline)}}));
}

std::string LiveFeed::newRequests() {
  auto log = world_->store().read([this](sandbox::Database& database) {
    if (!hasBegun_)
      lastRequest_ = std::max<std::int64_t>(RequestLog::last(database) - requestsAtFirst, 0);
    return RequestLog::read(database, {.after = lastRequest_, .limit = requestsAtFirst},
                            world_->id());
  });
  hasMore_ = !log["next"].is_null();
  auto& requests = log["requests"];
  if (hasBegun_ && requests.empty()) return "";
  if (!requests.empty()) lastRequest_ = requests.back()["number"];
  return eventOf("requests", sandbox::textOf({{"whole", !hasBegun_}, {"requests", requests}}));
}

std::string LiveFeed::newData() {
  auto stored = sandbox::textOf(world_->store().read(storedData));
  if (stored == stored_) return "";
  stored_ = std::move(stored);
  return eventOf("stored", stored_);
}

}  // namespace hlv::server
