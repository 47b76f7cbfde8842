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

sys_seconds currentSecond() {
  return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

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

Result<std::unique_ptr<Registry>> Registry::open(const std::string& storePath,
                                                 std::optional<std::uint64_t> seed,
                                                 std::shared_ptr<Writers> writers) {
  using Opened = Result<std::unique_ptr<Registry>>;
  auto lock = sandbox::lockStore(storePath);
  if (!lock) return Opened::failure(lock.problem());
  auto store = Store::open(storePath);
  if (!store) return Opened::failure(store.problem());
  try {
    if ((*store)->isNew() && seed) {
      (*store)->write([&](Database& database) { sandbox::storeSeed(database, *seed); });
    }
    const auto file = fs::absolute(storePath).string();
    const auto folder = file + ".sandboxes";
    fs::create_directories(folder);
    fs::permissions(folder, fs::perms::owner_all);
    auto registry = Store::open(folder + "/registry.sqlite");
    if (!registry) return Opened::failure(registry.problem());
    auto opened = std::unique_ptr<Registry>(
        new Registry(file, std::move(*lock), std::move(*registry), std::move(writers)));
    opened->readEntries();
    auto& entry = opened->entries_[defaultID];
    entry.created = currentSecond();
    entry.world = std::make_shared<World>(defaultID, *store, opened->writers_);
    entry.timeOpened = entry.world->openLog();
    return opened;
  } catch (const std::runtime_error& failure) {
    return Opened::failure(failure.what());
  }
}

Registry::Registry(std::string storePath, sandbox::StoreLock lock, std::shared_ptr<Store> registry,
                   std::shared_ptr<Writers> writers)
    : storePath_(std::move(storePath)),
      folder_(storePath_ + ".sandboxes"),
      lock_(std::move(lock)),
      registry_(std::move(registry)),
      snapshots_(folder_ + "/snapshots", registry_),
      writers_(std::move(writers)),
      mostOpen_(mostOpenSandboxes()) {}

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
  for (const auto& each : snapshots_.list()) kept.insert(each.id);
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
  if (entry.expires && *entry.expires <= currentSecond()) throw noSuchSandbox();
  if (!entry.world) {
    auto opened = entry.closing.lock();
    if (!opened) opened = std::make_shared<World>(id, openStore(storePathOf(id)), writers_);
    entry.timeOpened = opened->openLog();
    entry.world = std::move(opened);
    keepOpen(id, entry);
  }
  if (!entry.isInMemory && id != defaultID) {
    entry.lastUse = std::chrono::steady_clock::now();
    used_.splice(used_.begin(), used_, entry.place);
  }
  return entry.world;
}

std::shared_ptr<World> Registry::openWorld(const std::string& id) {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(id);
  return found == entries_.end() ? nullptr : found->second.world;
}

/// Closes others where too many are open.
void Registry::keepOpen(const std::string& id, Entry& entry) {
  used_.push_front(id);
  entry.place = used_.begin();
  entry.lastUse = std::chrono::steady_clock::now();
  auto place = used_.end();
  for (auto open = used_.size(); open > mostOpen_ && place != used_.begin(); --open) {
    auto& least = entries_.at(*--place);
    // The last one is in use by whoever opened it.
    if (least.world.use_count() > 1 || place == used_.begin()) continue;
    close(least);
    place = used_.erase(place);
  }
}

/// Its place among those that are open is the caller's to erase.
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
    if (entry.expires && *entry.expires <= currentSecond()) removeSoon(id);
    if (entry.world) entry.world->flushLog();
  }
  while (!used_.empty()) {
    auto& entry = entries_.at(used_.back());
    if (entry.lastUse > idleSince || entry.world.use_count() > 1) break;
    used_.pop_back();
    close(entry);
  }
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
  if (wanted.snapshot) snapshots_.pathOf(*wanted.snapshot);
  const auto id = wanted.id.value_or("sbx_" + sandbox::randomLetters(20));
  const auto reserved = reserveNew(id, wanted);
  Entry entry{currentSecond(), std::nullopt, wanted.isInMemory};
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
    if (!wanted.isInMemory) keepOpen(id, kept);
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
  if (wanted.snapshot) draft->replaceBy(snapshots_.pathOf(*wanted.snapshot), RequestLog::tables);
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
  const auto entry = std::move(entries_.extract(id).mapped());
  if (entry.world && !entry.isInMemory) used_.erase(entry.place);
  lock.unlock();
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
