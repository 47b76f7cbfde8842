#include "Server/Api/Registry.h"

#include <sys/resource.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

#include "Sandbox/Calls/Reachability.h"
#include "Sandbox/Masking/MaskedText.h"
#include "Sandbox/Records/Times.h"
#include "Sandbox/Store/Clock.h"
#include "Sandbox/Store/Identifiers.h"
#include "Sandbox/Store/KeptReplies.h"
#include "Sandbox/Store/Settings.h"
#include "Server/Api/ErrorReplies.h"
#include "Server/Api/SandboxClock.h"
#include "Server/Http/HttpError.h"

namespace hlv::server {
namespace {

namespace fs = std::filesystem;
using sandbox::Database;
using sandbox::NewSandbox;
using sandbox::SandboxDescription;
using sandbox::SnapshotDescription;
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
  return std::clamp<std::size_t>(limit.rlim_cur / 4 / 7, 4, 512);
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

HttpError noSuchSandbox() {
  return HttpError(404, "no-such-sandbox", "There is no sandbox of this name.");
}

HttpError noSuchSnapshot() {
  return HttpError(404, "no-such-snapshot", "There is no snapshot of this name.");
}

/// Does to a store what only a store of this sandbox allows.
template <class Use>
void useSnapshot(Use use) {
  try {
    use();
  } catch (const sandbox::NoStore&) {
    throw HttpError(409, "snapshot-version", "The snapshot was made by another version.");
  }
}

}  // namespace

Result<std::unique_ptr<Registry>> Registry::open(const std::string& storePath,
                                                 std::optional<std::uint64_t> seed,
                                                 std::shared_ptr<Writers> writers) {
  using Opened = Result<std::unique_ptr<Registry>>;
  auto lock = std::make_unique<sandbox::StoreLock>(storePath);
  if (!lock->problem().empty()) return Opened::failure(lock->problem());
  auto store = Store::open(storePath);
  if (!store) return Opened::failure(store.problem());
  try {
    if ((*store)->isNew() && seed) {
      (*store)->write([&](Database& database) { sandbox::storeSeed(database, *seed); });
    }
    const auto folder = storePath + ".sandboxes";
    fs::create_directories(folder + "/snapshots");
    fs::permissions(folder, fs::perms::owner_all);
    auto registry = Store::open(folder + "/registry.sqlite");
    if (!registry) return Opened::failure(registry.problem());
    auto opened = std::unique_ptr<Registry>(
        new Registry(storePath, std::move(lock), std::move(*registry), std::move(writers)));
    opened->readEntries();
    auto& entry = opened->entries_[defaultID];
    entry.created = currentSecond();
    entry.world = std::make_shared<World>(defaultID, *store, opened->writers_);
    entry.world->openLog();
    return opened;
  } catch (const std::runtime_error& failure) {
    return Opened::failure(failure.what());
  }
}

Registry::Registry(std::string storePath, std::unique_ptr<sandbox::StoreLock> lock,
                   std::shared_ptr<Store> registry, std::shared_ptr<Writers> writers)
    : storePath_(std::move(storePath)),
      folder_(storePath_ + ".sandboxes"),
      lock_(std::move(lock)),
      registry_(std::move(registry)),
      writers_(std::move(writers)),
      mostOpen_(mostOpenSandboxes()) {}

Registry::~Registry() {
  for (auto& [id, entry] : entries_) {
    if (!entry.world) continue;
    try {
      entry.world->closeLog();
    } catch (const sandbox::StoreFailure&) {
      // The log says so the next time.
    }
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
  // What a server left that ended while it made or deleted one.
  for (const auto& file : fs::directory_iterator(folder_)) {
    const auto id = file.path().stem().string();
    if (file.path().extension() == ".sqlite" && id != "registry" && !entries_.contains(id)) {
      removeFiles(id);
    }
  }
}

void Registry::setURLs(PublicURLs urls) {
  const std::lock_guard lock(mutex_);
  urls_ = std::move(urls);
}

std::shared_ptr<World> Registry::world(const std::string& id) {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(id);
  if (found == entries_.end()) throw noSuchSandbox();
  auto& entry = found->second;
  if (entry.expires && *entry.expires <= currentSecond()) throw noSuchSandbox();
  auto world = entry.world ? entry.world : opened(id, entry);
  use(id, entry);
  return world;
}

std::shared_ptr<World> Registry::openWorld(const std::string& id) {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(id);
  return found == entries_.end() ? nullptr : found->second.world;
}

std::shared_ptr<World> Registry::opened(const std::string& id, Entry& entry) {
  if (auto closing = entry.closing.lock()) {
    entry.world = std::move(closing);
  } else {
    auto store = Store::open(storePathOf(id));
    if (!store) throw HttpError(507, "store-failed", store.problem());
    entry.world = std::make_shared<World>(id, std::move(*store), writers_);
  }
  entry.world->openLog();
  used_.push_front(id);
  entry.place = used_.begin();
  closeLeastUsed();
  return entry.world;
}

void Registry::use(const std::string& id, Entry& entry) {
  if (entry.isInMemory || id == defaultID) return;
  entry.lastUse = std::chrono::steady_clock::now();
  used_.splice(used_.begin(), used_, entry.place);
}

void Registry::closeLeastUsed() {
  auto place = used_.end();
  for (auto open = used_.size(); open > mostOpen_ && place != used_.begin(); --open) {
    auto& entry = entries_.at(*--place);
    // The last one is in use by whoever opened it.
    if (entry.world.use_count() > 1 || place == used_.begin()) continue;
    close(entry);
    place = used_.erase(place);
  }
}

/// Its place among those that are open is the caller's to erase.
void Registry::close(Entry& entry) {
  entry.closing = entry.world;
  writers_->post([world = std::move(entry.world)] {
    try {
      world->closeLog();
    } catch (const sandbox::StoreFailure&) {
      // The log says so the next time.
    }
  });
  entry.world = nullptr;
}

std::string Registry::pathOf(const World& world) const {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(world.id());
  return found == entries_.end() || found->second.isInMemory ? "" : storePathOf(world.id());
}

void Registry::perform(std::function<HttpReply()> work, const std::string& requestID,
                       const Reply& reply) {
  writers_->post([work = std::move(work), requestID, reply] {
    try {
      reply(work());
    } catch (...) {
      reply(errorReply(std::current_exception(), requestID));
    }
  });
}

std::string Registry::reserveID(const NewSandbox& wanted) {
  const auto id = wanted.id.value_or("sbx_" + sandbox::randomLetters(20));
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
  if (entries_.contains(id) || !reserved_.insert(id).second) {
    throw HttpError(409, "sandbox-exists", "There is a sandbox of this name.");
  }
  return id;
}

std::shared_ptr<Store> Registry::makeStore(const std::string& id, const NewSandbox& wanted) const {
  // In memory first, so that the disk is waited for once.
  auto draft = Store::openInMemory();
  if (wanted.snapshot) {
    const auto path = folder_ + "/snapshots/" + *wanted.snapshot + ".sqlite";
    useSnapshot([&] { draft->replaceBy(path); });
  }
  draft->write([&](Database& database) {
    RequestLog::clear(database);
    sandbox::keptRepliesSalt(database);
    if (wanted.seed) sandbox::storeSeed(database, *wanted.seed);
    if (wanted.clock) moveClock(database, clockTimeIn(*wanted.clock));
  });
  if (wanted.isInMemory) return draft;
  draft->copyTo(storePathOf(id));
  auto opened = Store::open(storePathOf(id));
  if (!opened) throw HttpError(507, "store-failed", opened.problem());
  return std::move(*opened);
}

SandboxDescription Registry::create(const NewSandbox& wanted) {
  if (wanted.snapshot) snapshotPath(*wanted.snapshot);
  const auto id = reserveID(wanted);
  try {
    auto store = makeStore(id, wanted);
    Entry entry{currentSecond(), std::nullopt, wanted.isInMemory};
    if (wanted.secondsToLive) {
      entry.expires = entry.created + std::chrono::seconds(*wanted.secondsToLive);
    }
    entry.world = std::make_shared<World>(id, std::move(store), writers_);
    entry.world->openLog();
    if (!wanted.isInMemory) {
      const auto expires =
          entry.expires ? std::optional<std::int64_t>(entry.expires->time_since_epoch().count())
                        : std::nullopt;
      registry_->write([&](Database& database) {
        database.run("INSERT INTO sandboxes (id, created, expires) VALUES (?, ?, ?)", id,
                     std::int64_t{entry.created.time_since_epoch().count()}, expires);
      });
    }
    const auto made = entry;
    {
      const std::lock_guard lock(mutex_);
      reserved_.erase(id);
      auto& kept = entries_[id] = std::move(entry);
      if (!wanted.isInMemory) {
        used_.push_front(id);
        kept.place = used_.begin();
        use(id, kept);
        closeLeastUsed();
      }
    }
    return description(*made.world, made);
  } catch (...) {
    const std::lock_guard lock(mutex_);
    reserved_.erase(id);
    if (!entries_.contains(id)) removeFiles(id);
    throw;
  }
}

void Registry::remove(const std::string& id) {
  if (id == defaultID) {
    throw HttpError(409, "default-sandbox", "The default sandbox can be reset, not deleted.");
  }
  {
    // Nobody makes another one of this name until all of this one has gone.
    const std::lock_guard lock(mutex_);
    if (!entries_.contains(id) || !reserved_.insert(id).second) throw noSuchSandbox();
  }
  try {
    registry_->write(
        [&](Database& database) { database.run("DELETE FROM sandboxes WHERE id = ?", id); });
    forget(id);
    removeFiles(id);
  } catch (...) {
    const std::lock_guard lock(mutex_);
    reserved_.erase(id);
    throw;
  }
  const std::lock_guard lock(mutex_);
  reserved_.erase(id);
}

void Registry::forget(const std::string& id) {
  // Is freed after the lock.
  std::shared_ptr<World> world;
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(id);
  auto& entry = found->second;
  world = std::move(entry.world);
  if (world && !entry.isInMemory) used_.erase(entry.place);
  entries_.erase(found);
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

std::vector<SandboxDescription> Registry::list(const std::string& after, std::size_t limit) {
  std::vector<std::string> ids;
  {
    const std::lock_guard lock(mutex_);
    for (auto place = entries_.upper_bound(after); place != entries_.end() && ids.size() < limit;
         ++place) {
      ids.push_back(place->first);
    }
  }
  std::vector<SandboxDescription> descriptions;
  for (const auto& id : ids) {
    try {
      descriptions.push_back(describe(id));
    } catch (const HttpError& error) {
      if (error.status != 404) throw;  // It was deleted meanwhile.
    }
  }
  return descriptions;
}

SandboxDescription Registry::describe(const std::string& id) {
  const auto open = world(id);
  const auto entry = [&] {
    const std::lock_guard lock(mutex_);
    const auto found = entries_.find(id);
    if (found == entries_.end()) throw noSuchSandbox();
    return found->second;
  }();
  return description(*open, entry);
}

SandboxDescription Registry::description(World& world, const Entry& entry) const {
  SandboxDescription description;
  description.id = world.id();
  world.store().read([&](Database& database) {
    description.seed = sandbox::seedOf(database);
    description.clock = sandbox::timeText(sandbox::sandboxTime(database));
    description.isNetworkOn = isReachable(sandbox::readNetworkState(database));
    description.guests = database.integer("SELECT count(*) FROM backend_guests");
  });
  description.isInMemory = entry.isInMemory;
  description.created = sandbox::timeText(entry.created);
  if (entry.expires) description.expires = sandbox::timeText(*entry.expires);
  const std::lock_guard lock(mutex_);
  const auto below = world.id() == defaultID ? "" : "/sandboxes/" + world.id();
  description.backendURL = urls_.backend + below;
  description.providerURL = urls_.provider + below;
  description.controlURL = urls_.provider + below + "/v1/sandbox";
  description.consoleURL = urls_.console + below;
  return description;
}

SnapshotDescription Registry::snapshot(const std::string& id) {
  const auto source = world(id);
  const auto created = currentSecond();
  SnapshotDescription made{"snp_" + sandbox::randomLetters(20), sandbox::timeText(created), id};
  const auto path = folder_ + "/snapshots/" + made.id + ".sqlite";
  source->store().copyTo(path);
  try {
    registry_->write([&](Database& database) {
      database.run("INSERT INTO snapshots (id, created, sandbox) VALUES (?, ?, ?)", made.id,
                   std::int64_t{created.time_since_epoch().count()}, id);
    });
  } catch (const sandbox::StoreFailure&) {
    fs::remove(path);
    throw;
  }
  return made;
}

std::string Registry::snapshotPath(const std::string& snapshot) {
  const bool isKnown = registry_->read([&](Database& database) {
    return database.query("SELECT 1 FROM snapshots WHERE id = ?", snapshot).next();
  });
  if (!isKnown) throw noSuchSnapshot();
  return folder_ + "/snapshots/" + snapshot + ".sqlite";
}

void Registry::restore(const std::string& id, const std::string& snapshot, World::Done then) {
  const auto target = world(id);
  const auto path = snapshotPath(snapshot);
  target->runAlone([target = target.get(), path] { useSnapshot([&] { target->restore(path); }); },
                   std::move(then));
}

std::vector<SnapshotDescription> Registry::snapshots() {
  return registry_->read([](Database& database) {
    std::vector<SnapshotDescription> all;
    auto row = database.query("SELECT id, created, sandbox FROM snapshots ORDER BY created, id");
    while (row.next()) {
      all.push_back({row.text(0), sandbox::timeText(timeOf(row.integer(1))), row.text(2)});
    }
    return all;
  });
}

void Registry::removeSnapshot(const std::string& snapshot) {
  const auto path = snapshotPath(snapshot);
  registry_->write(
      [&](Database& database) { database.run("DELETE FROM snapshots WHERE id = ?", snapshot); });
  fs::remove(path);
}

std::optional<std::string> Registry::note(const std::string& name) {
  return registry_->read([&](Database& database) { return sandbox::readSetting(database, name); });
}

void Registry::setNote(const std::string& name, const std::string& text) {
  registry_->write([&](Database& database) { sandbox::writeSetting(database, name, text); });
}

void Registry::runMaintenance() {
  removeExpired();
  const std::lock_guard lock(mutex_);
  const auto idleSince = std::chrono::steady_clock::now() - idleTime;
  for (auto& [id, entry] : entries_) {
    if (entry.world) entry.world->flushLog();
  }
  while (!used_.empty()) {
    auto& entry = entries_.at(used_.back());
    if (entry.lastUse > idleSince || entry.world.use_count() > 1) break;
    used_.pop_back();
    close(entry);
  }
}

void Registry::removeExpired() {
  std::vector<std::string> expired;
  {
    const std::lock_guard lock(mutex_);
    for (const auto& [id, entry] : entries_) {
      if (entry.expires && *entry.expires <= currentSecond()) expired.push_back(id);
    }
  }
  for (const auto& id : expired) {
    writers_->post([this, id] {
      try {
        remove(id);
      } catch (const std::exception&) {
        // Somebody was faster, or it is tried again at the next start.
      }
    });
  }
}

}  // namespace hlv::server
