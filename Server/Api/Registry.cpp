#include "Server/Api/Registry.h"

#include <sys/resource.h>

#include <algorithm>
#include <boost/asio/post.hpp>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

#include "Sandbox/Masking/MaskedText.h"
#include "Sandbox/Store/Clock.h"
#include "Sandbox/Store/Identifiers.h"
#include "Server/Api/Idempotency.h"
#include "Server/Api/Inputs.h"

namespace hlv::server {
namespace {

namespace fs = std::filesystem;
using sandbox::Database;
using sandbox::NewSandbox;
using sandbox::SandboxDescription;
using sandbox::Store;
using std::chrono::sys_seconds;

constexpr std::size_t mostInMemory = 1'000;
constexpr std::size_t mostSandboxes = 100'000;
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

bool isID(const std::string& id) {
  const auto isPlain = [](char character) {
    return (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9');
  };
  const auto isPart = [&](char character) {
    return isPlain(character) || character == '-' || character == '_';
  };
  return !id.empty() && id.size() <= 63 && isPlain(id.front()) &&
         std::all_of(id.begin(), id.end(), isPart) && !sandbox::holdsCardNumber(id);
}

std::shared_ptr<Store> openStore(const std::string& path) {
  auto opened = Store::open(path);
  // The problem names the file, which is the server's own affair.
  if (!opened) throw HttpError(507, "store-failed", "The sandbox's store cannot be opened.");
  return std::move(*opened);
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

void closeLogOf(World& world, int time) {
  try {
    world.closeLog(time);
  } catch (const sandbox::StoreFailure&) {
    // The log says so the next time.
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
      lock_(sandbox::lockStore(storePath).value()),
      writers_(std::move(writers)),
      mostOpen_(mostOpenSandboxes()) {
  const auto store = Store::open(storePath).value();
  if (store->isNew() && seed) {
    store->write([&](Database& database) { sandbox::storeSeed(database, *seed); });
  }
  fs::create_directories(folder_ + "/snapshots");
  fs::permissions(folder_, fs::perms::owner_all);
  const auto list = folder_ + "/registry.sqlite";
  requireList(folder_, list);
  registry_ = Store::open(list).value();
  readEntries();
  auto& entry = entries_[defaultID];
  entry.created = sandbox::machineTime();
  entry.world = std::make_shared<World>(defaultID, store, writers_);
  entry.timeOpened = entry.world->openLog();
}

Registry::~Registry() {
  for (auto& [id, entry] : entries_) {
    if (entry.world) closeLogOf(*entry.world, entry.timeOpened);
  }
}

void Registry::readEntries() {
  registry_->read([this](Database& database) {
    auto row = database.query("SELECT id, created, expires FROM sandboxes");
    while (row.next()) {
      auto& entry = entries_[row.text(0)];
      entry.created = timeOf(row.integer(1));
      if (const auto expires = row.integerOrNull(2)) entry.expires = timeOf(*expires);
    }
  });
  removeAllBut(folder_,
               [this](const auto& id) { return id == "registry" || entries_.contains(id); });
  std::set<std::string> kept;
  for (const auto& each : snapshots()) kept.insert(each.id);
  removeAllBut(folder_ + "/snapshots", [&](const auto& id) { return kept.contains(id); });
}

void Registry::setURLs(PublicURLs urls) {
  const std::lock_guard lock(mutex_);
  urls_ = std::move(urls);
}

Registry::Entry& Registry::entryOf(const std::string& id) {
  const auto found = entries_.find(id);
  if (found == entries_.end()) throw noSuchSandbox();
  return found->second;
}

// What is open.

std::shared_ptr<World> Registry::world(const std::string& id) {
  const std::lock_guard lock(mutex_);
  auto& entry = entryOf(id);
  if (entry.expires && *entry.expires <= sandbox::machineTime()) throw noSuchSandbox();
  if (!entry.world) {
    auto opened = entry.closing.lock();
    if (!opened) opened = std::make_shared<World>(id, openStore(storePathOf(id)), writers_);
    entry.timeOpened = opened->openLog();
    entry.world = std::move(opened);
    keepOpen(entry);
  }
  entry.lastUse = std::chrono::steady_clock::now();
  return entry.world;
}

std::shared_ptr<World> Registry::openWorld(const std::string& id) {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(id);
  return found == entries_.end() ? nullptr : found->second.world;
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
  entry.closing = entry.world;
  post([world = std::exchange(entry.world, nullptr), time = entry.timeOpened] {
    closeLogOf(*world, time);
  });
}

std::string Registry::pathOf(const World& world) const {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(world.id());
  return found == entries_.end() || found->second.isInMemory ? "" : storePathOf(world.id());
}

void Registry::post(std::function<void()> task) { boost::asio::post(*writers_, std::move(task)); }

void Registry::runMaintenance() {
  const std::lock_guard lock(mutex_);
  const auto idleSince = std::chrono::steady_clock::now() - idleTime;
  for (auto& [id, entry] : entries_) {
    if (entry.expires && *entry.expires <= sandbox::machineTime()) removeSoon(id);
    if (entry.world) entry.world->flushLog();
  }
  std::erase_if(open_, [&](Entry* entry) {
    const bool isIdle = entry->lastUse <= idleSince && !entry->isInUse();
    if (isIdle) close(*entry);
    return isIdle;
  });
}

void Registry::removeSoon(const std::string& id) {
  post([this, id] {
    try {
      remove(id);
    } catch (const std::exception&) {
      // Somebody was faster, or it is tried again at the next start.
    }
  });
}

// Making and removing.

SandboxDescription Registry::create(const NewSandbox& wanted) {
  if (wanted.snapshot) requireSnapshot(*wanted.snapshot);
  const auto id = wanted.id.value_or("sbx_" + sandbox::randomLetters(20));
  const auto reserved = reserveNew(id, wanted);
  Entry entry{sandbox::machineTime(), std::nullopt, wanted.isInMemory};
  std::optional<std::int64_t> expires;
  if (wanted.secondsToLive) {
    entry.expires = entry.created + std::chrono::seconds(*wanted.secondsToLive);
    expires = entry.expires->time_since_epoch().count();
  }
  try {
    entry.world = std::make_shared<World>(id, makeStore(id, wanted), writers_);
    entry.timeOpened = entry.world->openLog();
    if (!wanted.isInMemory) {
      registry_->write([&](Database& database) {
        database.run("INSERT INTO sandboxes (id, created, expires) VALUES (?, ?, ?)", id,
                     std::int64_t{entry.created.time_since_epoch().count()}, expires);
      });
    }
  } catch (...) {
    removeFiles(id);
    throw;
  }
  {
    const std::lock_guard lock(mutex_);
    auto& kept = entries_[id] = std::move(entry);
    if (!wanted.isInMemory) keepOpen(kept);
  }
  return describe(id);
}

std::shared_ptr<void> Registry::reserve(const std::string& id) {
  if (!reserved_.insert(id).second) return nullptr;
  return {this, [id](Registry* self) {
            const std::lock_guard lock(self->mutex_);
            self->reserved_.erase(id);
          }};
}

std::shared_ptr<void> Registry::reserveNew(const std::string& id, const NewSandbox& wanted) {
  if (!isID(id)) {
    throw HttpError(422, "invalid-id",
                    "A sandbox is named by small letters, digits, '-' and '_', 63 at most.");
  }
  if (wanted.secondsToLive &&
      (*wanted.secondsToLive < 1 || *wanted.secondsToLive > 366L * 86'400)) {
    throw HttpError(422, "invalid-time-to-live", "A sandbox lives for a second to a year.");
  }
  const std::lock_guard lock(mutex_);
  const auto inMemory = static_cast<std::size_t>(std::count_if(
      entries_.begin(), entries_.end(), [](const auto& each) { return each.second.isInMemory; }));
  if (entries_.size() + reserved_.size() > mostSandboxes ||
      (wanted.isInMemory && inMemory >= mostInMemory)) {
    throw HttpError(507, "too-many-sandboxes", "There are too many sandboxes; delete some first.");
  }
  auto reserved = entries_.contains(id) ? nullptr : reserve(id);
  if (!reserved) throw HttpError(409, "sandbox-exists", "There is a sandbox of this name.");
  return reserved;
}

std::shared_ptr<Store> Registry::makeStore(const std::string& id, const NewSandbox& wanted) const {
  // In memory first, so that the disk is waited for once.
  auto draft = Store::openInMemory();
  if (wanted.snapshot) draft->replaceBy(requireSnapshot(*wanted.snapshot), RequestLog::tables);
  draft->write([&](Database& database) {
    RequestLog::close(database);
    IdempotentRequest::salt(database);
    if (wanted.seed) sandbox::storeSeed(database, *wanted.seed);
    if (wanted.clock) moveClock(database, clockTimeIn(*wanted.clock));
  });
  if (wanted.isInMemory) return draft;
  draft->copyTo(storePathOf(id));
  return openStore(storePathOf(id));
}

void Registry::remove(const std::string& id) {
  if (id == defaultID) {
    throw HttpError(409, "default-sandbox", "The default sandbox can be reset, not deleted.");
  }
  std::unique_lock lock(mutex_);
  const auto reserved = entries_.contains(id) ? reserve(id) : nullptr;
  lock.unlock();
  if (!reserved) throw noSuchSandbox();
  registry_->write(
      [&](Database& database) { database.run("DELETE FROM sandboxes WHERE id = ?", id); });
  lock.lock();
  std::erase(open_, &entries_.at(id));
  const auto removed = entries_.extract(id);
  lock.unlock();
  const auto& entry = removed.mapped();
  if (const auto world = entry.world ? entry.world : entry.closing.lock()) world->markRemoved();
  removeFiles(id);
}

void Registry::removeFiles(const std::string& id) const {
  const auto path = storePathOf(id);
  for (const std::string_view end : {"", "-wal", "-shm", ".log"}) {
    std::error_code ignored;
    fs::remove(path + std::string(end), ignored);
  }
}

std::string Registry::storePathOf(const std::string& id) const {
  return id == defaultID ? storePath_ : folder_ + "/" + id + ".sqlite";
}

}  // namespace hlv::server
