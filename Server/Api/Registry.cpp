#include "Server/Api/Registry.h"

#include <sys/resource.h>

#include <algorithm>
#include <boost/asio/post.hpp>
#include <filesystem>
#include <system_error>
#include <utility>

#include "Sandbox/Calls/Reachability.h"
#include "Sandbox/Records/Times.h"
#include "Sandbox/Store/Clock.h"
#include "Sandbox/Store/Identifiers.h"
#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox::server {
namespace {

namespace fs = std::filesystem;
using std::chrono::sys_seconds;

constexpr std::chrono::seconds idleTime{30};

sys_seconds timeOf(std::int64_t secondsSince1970) {
  return sys_seconds(std::chrono::seconds(secondsSince1970));
}

/// An open sandbox takes up to seven descriptors, and a quarter of them all is for sandboxes.
std::size_t mostOpenSandboxes() {
  rlimit limit{};
  ::getrlimit(RLIMIT_NOFILE, &limit);
  return std::clamp<std::size_t>(limit.rlim_cur / 4 / 7, 1, 512);
}

/// Removes what a server left that ended while it made, read or deleted a store.
template <class IsKept>
void removeAllBut(const std::string& folder, IsKept isKept) {
  for (const auto& file : fs::directory_iterator(folder)) {
    const auto name = file.path().filename().string();
    const auto end = name.find(".sqlite");
    std::error_code ignored;
    if (end != std::string::npos && !isKept(name.substr(0, end))) fs::remove(file.path(), ignored);
  }
}

/// Without their list, sandboxes would be taken for what a server left.
void requireList(const std::string& folder, const std::string& list) {
  std::error_code isMissing;
  if (fs::file_size(list, isMissing) > 0 && !isMissing) return;
  for (const auto& file : fs::directory_iterator(folder)) {
    if (file.path().extension() != ".sqlite" || file.path() == list) continue;
    throw Problem("The list of the store's sandboxes, '" + list +
                  "', is gone. Put it back, or remove its folder and all sandboxes with it.");
  }
}

}  // namespace

HttpError noSuchSandbox() {
  return HttpError(404, "no-such-sandbox", "There is no sandbox of this name.");
}

Registry::Registry(const std::string& storePath, std::optional<std::uint64_t> seed,
                   std::shared_ptr<Writers> writers)
    : storePath_(fs::absolute(storePath).string()),
      folder_(storePath_ + ".sandboxes"),
      lock_(lockStore(storePath).value()),
      writers_(std::move(writers)),
      mostOpen_(mostOpenSandboxes()) {
  const auto store = Store::open(storePath).value();
  if (store->isNew() && seed) {
    store->write([&](Database& database) { storeSeed(database, *seed); });
  }
  fs::create_directories(folder_ + "/snapshots");
  fs::permissions(folder_, fs::perms::owner_all);
  const auto list = folder_ + "/registry.sqlite";
  requireList(folder_, list);
  registry_ = Store::open(list).value();
  readEntries();
  auto& entry = entries_[defaultID];
  entry.created = machineTime();
  entry.sandbox = std::make_shared<OpenSandbox>(defaultID, store, writers_);
  entry.timeOpened = entry.sandbox->openLog();
}

Registry::~Registry() {
  for (auto& [id, entry] : entries_) {
    if (entry.sandbox) entry.sandbox->closeLog(entry.timeOpened);
  }
}

void Registry::readEntries() {
  registry_->read([this](Database& database) {
    const Lock lock(mutex_);
    auto row = database.query("SELECT id, created, expires FROM sandboxes");
    while (row.next()) {
      auto& entry = entries_[row.text(0)];
      entry.created = timeOf(row.integer(1));
      if (const auto expires = row.integerOrNull(2)) entry.expires = timeOf(*expires);
    }
  });
  removeAllBut(folder_, [this](const auto& id) {
    const Lock lock(mutex_);
    return id == "registry" || entries_.contains(id);
  });
  std::set<std::string> kept;
  for (const auto& each : snapshots()) kept.insert(each.id);
  removeAllBut(folder_ + "/snapshots", [&](const auto& id) { return kept.contains(id); });
}

void Registry::setURLs(PublicURLs urls) {
  const Lock lock(mutex_);
  urls_ = std::move(urls);
}

Registry::Entry& Registry::entryOf(const std::string& id) {
  const auto found = entries_.find(id);
  const bool isThere = found != entries_.end() &&
                       !(found->second.expires && *found->second.expires <= machineTime());
  if (!isThere) throw noSuchSandbox();
  return found->second;
}

std::shared_ptr<Store> Registry::openStore(const std::string& id) const {
  auto opened = Store::open(storePathOf(id));
  // The problem names the file, which is the server's own affair.
  if (!opened) throw StoreFailure("The sandbox's store cannot be opened.");
  return std::move(*opened);
}

std::string Registry::storePathOf(const std::string& id) const {
  return id == defaultID ? storePath_ : folder_ + "/" + id + ".sqlite";
}

// What is open.

std::shared_ptr<OpenSandbox> Registry::open(const std::string& id) {
  const Lock lock(mutex_);
  auto& entry = entryOf(id);
  if (!entry.sandbox) {
    auto opened = entry.closing.lock();
    if (!opened) opened = std::make_shared<OpenSandbox>(id, openStore(id), writers_);
    entry.timeOpened = opened->openLog();
    entry.sandbox = std::move(opened);
    keepOpen(entry);
  }
  entry.lastUse = std::chrono::steady_clock::now();
  return entry.sandbox;
}

std::shared_ptr<OpenSandbox> Registry::findOpen(const std::string& id) {
  const Lock lock(mutex_);
  const auto found = entries_.find(id);
  return found == entries_.end() ? nullptr : found->second.sandbox;
}

/// Closes others where too many are open.
void Registry::keepOpen(Entry& entry) {
  const auto lastUse = [](const Entry* each) { return std::pair(each->isInUse(), each->lastUse); };
  while (open_.size() >= mostOpen_) {
    const auto least = std::ranges::min_element(open_, {}, lastUse);
    if ((*least)->isInUse()) break;
    close(**least);
    open_.erase(least);
  }
  entry.lastUse = std::chrono::steady_clock::now();
  open_.push_back(&entry);
}

void Registry::close(Entry& entry) {
  entry.closing = entry.sandbox;
  auto end = [this, sandbox = std::exchange(entry.sandbox, nullptr),
              time = entry.timeOpened]() mutable {
    sandbox->closeLog(time);
    sandbox.reset();
    --closing_;
  };
  // What waits for its end holds its files: where they are many, whoever opens another one waits.
  if (++closing_ > mostOpen_) {
    end();
  } else {
    post(std::move(end));
  }
}

std::string Registry::pathOf(const OpenSandbox& sandbox) const {
  const Lock lock(mutex_);
  const auto found = entries_.find(sandbox.id());
  return found == entries_.end() || found->second.isInMemory ? "" : storePathOf(sandbox.id());
}

void Registry::post(std::function<void()> task) { boost::asio::post(*writers_, std::move(task)); }

void Registry::runMaintenance() {
  const Lock lock(mutex_);
  const auto idleSince = std::chrono::steady_clock::now() - idleTime;
  for (auto& [id, entry] : entries_) {
    if (entry.expires && *entry.expires <= machineTime()) {
      post([this, expired = id] {
        try {
          remove(expired);
        } catch (const std::exception&) {
          // Somebody was faster, or it is tried again at the next start.
        }
      });
    }
    if (entry.sandbox) entry.sandbox->flushLog();
  }
  std::erase_if(open_, [&](Entry* entry) {
    const bool isIdle = entry->lastUse <= idleSince && !entry->isInUse();
    if (isIdle) close(*entry);
    return isIdle;
  });
}

// What is known of them.

std::vector<SandboxDescription> Registry::list(const std::string& after, std::size_t limit) {
  const auto idAfter = [this](const std::string& id) {
    const Lock lock(mutex_);
    const auto next = entries_.upper_bound(id);
    return next == entries_.end() ? std::string() : next->first;
  };
  std::vector<SandboxDescription> descriptions;
  for (auto id = idAfter(after); !id.empty() && descriptions.size() < limit; id = idAfter(id)) {
    try {
      auto description = describeEntry(id);
      try {
        describeStore(description);
      } catch (const StoreFailure& failure) {
        description.problem = failure.what();
      }
      descriptions.push_back(std::move(description));
    } catch (const HttpError&) {
      // It was deleted meanwhile.
    }
  }
  return descriptions;
}

SandboxDescription Registry::describe(const std::string& id) {
  auto description = describeEntry(id);
  describeStore(description);
  return description;
}

SandboxDescription Registry::describeEntry(const std::string& id) {
  SandboxDescription description;
  description.id = id;
  const Lock lock(mutex_);
  const auto& entry = entryOf(id);
  description.isInMemory = entry.isInMemory;
  description.created = timeText(entry.created);
  if (entry.expires) description.expires = timeText(*entry.expires);
  const auto below = id == defaultID ? "" : "/sandboxes/" + id;
  description.backendURL = urls_.backend + below;
  description.providerURL = urls_.provider + below;
  description.controlURL = urls_.provider + below + "/v1/sandbox";
  description.consoleURL = urls_.console + below;
  return description;
}

void Registry::describeStore(SandboxDescription& description) {
  open(description.id)->store().read([&](Database& database) {
    description.seed = seedOf(database);
    description.clock = timeText(sandboxTime(database));
    description.isNetworkOn = isReachable(readNetworkState(database));
    description.guests = database.integer("SELECT count(*) FROM backend_guests");
  });
}

std::optional<std::string> Registry::note(const std::string& name) {
  return registry_->read([&](Database& database) { return readSetting(database, name); });
}

void Registry::setNote(const std::string& name, const std::string& text) {
  registry_->write([&](Database& database) { writeSetting(database, name, text); });
}

}  // namespace hlv::sandbox::server
