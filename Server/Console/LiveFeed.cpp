#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <utility>

#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Backend/BackendTables.h"
#include "Sandbox/Calls/Reachability.h"
#include "Sandbox/Faults/FaultTables.h"
#include "Sandbox/JSON/CardRecords.h"
#include "Sandbox/JSON/FaultRecords.h"
#include "Sandbox/JSON/InstrumentRecords.h"
#include "Sandbox/JSON/JournalRecords.h"
#include "Sandbox/Provider/Provider.h"
#include "Sandbox/Records/Pairs.h"
#include "Server/Console/Console.h"
#include "Server/Http/HttpError.h"

namespace hlv::sandbox::server {
namespace {

constexpr std::size_t operationsAtFirst = 50;
/// All that the log keeps.
constexpr std::int64_t requestsAtFirst = 1'000;

/// JSON has no line breaks, which would end the event.
std::string eventOf(const std::string& name, const std::string& sandbox, Json data) {
  data["sandbox"] = sandbox;
  return "event: " + name + "\ndata: " + textOf(data) + "\n\n";
}

/// What is new in one of them.
class SandboxFeed {
 public:
  /// Null for a sandbox that does not exist, of which that is all that is new.
  explicit SandboxFeed(std::shared_ptr<OpenSandbox> sandbox) : sandbox_(std::move(sandbox)) {}

  const std::shared_ptr<OpenSandbox>& sandbox() const { return sandbox_; }

  std::string next() {
    // Read first, so that what comes meanwhile is found the next time.
    const auto changes = sandbox_->store().changes();
    if (changes == changes_ && !hasMore_) return "";
    startAgainAfterRestore();
    auto news = newEvents() + newData() + newRequests();
    changes_ = changes;
    hasBegun_ = true;
    return news;
  }

 private:
  /// The events of a snapshot, and of an empty store, are other ones.
  void startAgainAfterRestore() {
    const auto last = sandbox_->store().read([](Database& database) {
      return database.integer("SELECT coalesce(max(number), 0) FROM events");
    });
    if (last >= lastEvent_) return;
    hasBegun_ = false;
    lastEvent_ = 0;
  }

  std::string newEvents() {
    const Journal journal(sandbox_->sharedStore(), "start");
    const auto timeline = hasBegun_ ? journal.since(lastEvent_) : journal.last(operationsAtFirst);
    if (hasBegun_ && timeline.empty()) return "";
    for (const auto& operation : timeline) {
      for (const auto& event : operation.events) lastEvent_ = std::max(lastEvent_, event.number);
    }
    return eventOf("timeline", sandbox_->id(),
                   {{"whole", !hasBegun_}, {"operations", listOf(timeline)}});
  }

  std::string newRequests() {
    auto log = sandbox_->store().read([this](Database& database) {
      if (!hasBegun_)
        lastRequest_ = std::max<std::int64_t>(RequestLog::last(database) - requestsAtFirst, 0);
      return RequestLog::read(database, {.after = lastRequest_, .limit = requestsAtFirst},
                              sandbox_->id());
    });
    hasMore_ = !log["next"].is_null();
    auto& requests = log["requests"];
    if (hasBegun_ && requests.empty()) return "";
    if (!requests.empty()) lastRequest_ = requests.back()["number"];
    return eventOf("requests", sandbox_->id(), {{"whole", !hasBegun_}, {"requests", requests}});
  }

  std::string newData() {
    auto stored = sandbox_->store().read(storedData);
    if (stored == stored_) return "";
    stored_ = std::move(stored);
    return eventOf("stored", sandbox_->id(), stored_);
  }

  const std::shared_ptr<OpenSandbox> sandbox_;
  bool hasBegun_ = false;
  bool hasMore_ = true;
  std::int64_t changes_ = 0;
  std::int64_t lastEvent_ = 0;
  std::int64_t lastRequest_ = 0;
  Json stored_;
};

}  // namespace

Json storedData(Database& database) {
  const auto email = backend::signedInEmail(database);
  std::vector<BackendCard> cards;
  std::vector<ProviderInstrument> instruments;
  Json guest;
  if (email) {
    cards = readCards(database, *email);
    instruments = provider::instrumentsOf(database, *email);
    guest = {{"email", *email}, {"has_token", readGuestToken(database, *email).has_value()}};
  }
  auto pairs = Json::array();
  for (const auto& [card, instrument] : pairsOf(cards, instruments)) {
    pairs.push_back({{"card", card ? jsonOf(*card) : Json()},
                     {"instrument", instrument ? jsonOf(*instrument) : Json()}});
  }
  return {
      {"guest", std::move(guest)},
      {"network", isReachable(readNetworkState(database))},
      {"pairs", std::move(pairs)},
      {"faults", listOf(readFaults(database))},
      {"oldest_operation", database.integer("SELECT coalesce(min(number), 0) FROM operations")}};
}

EventStream liveFeed(Registry& registry, const std::set<std::string>& sandboxes) {
  std::map<std::string, std::shared_ptr<SandboxFeed>> feeds;
  for (const auto& id : sandboxes) feeds[id] = nullptr;
  return [&registry, feeds = std::move(feeds)]() mutable {
    std::string news;
    for (auto& [id, feed] : feeds) {
      std::shared_ptr<OpenSandbox> sandbox;
      try {
        sandbox = registry.open(id);
      } catch (const HttpError& error) {
        if (error.status != 404) throw;
      }
      // One that was deleted and made again is another one.
      if (!feed || feed->sandbox() != sandbox) {
        feed = std::make_shared<SandboxFeed>(sandbox);
        news += eventOf("state", id, {{"state", sandbox ? "live" : "deleted"}});
      }
      if (sandbox) news += feed->next();
    }
    return news;
  };
}

}  // namespace hlv::sandbox::server
