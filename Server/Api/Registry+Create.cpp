#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "Sandbox/Masking/MaskedText.h"
#include "Sandbox/Records/Times.h"
#include "Sandbox/Store/Clock.h"
#include "Sandbox/Store/Identifiers.h"
#include "Server/Api/Idempotency.h"
#include "Server/Api/Registry.h"

namespace hlv::sandbox::server {
namespace {

namespace fs = std::filesystem;

constexpr std::ptrdiff_t mostInMemory = 1'000;
constexpr std::size_t mostSandboxes = 100'000;

bool isID(const std::string& id) {
  constexpr const char* characters = "abcdefghijklmnopqrstuvwxyz0123456789-_";
  return !id.empty() && id.size() <= 63 && id.front() != '-' && id.front() != '_' &&
         id.find_first_not_of(characters) == std::string::npos && !holdsCardNumber(id);
}

}  // namespace

std::chrono::sys_seconds clockTimeIn(const std::string& text) {
  const auto time = timeIn(text);
  if (!time) throw HttpError(422, "wrong-type", "The clock reads as 2030-01-31T00:00:00Z.");
  return *time;
}

void moveClock(Database& database, std::chrono::sys_seconds time) {
  if (!setSandboxTime(database, time)) {
    throw HttpError(422, "clock-backwards", "A clock moves forwards only, up to the year 9999.");
  }
}

SandboxDescription Registry::create(const NewSandbox& wanted) {
  if (wanted.snapshot) requireSnapshot(*wanted.snapshot);
  const auto id = wanted.id.value_or("sbx_" + randomLetters(20));
  const auto reserved = reserveNew(id, wanted);
  Entry entry{machineTime(), std::nullopt, wanted.isInMemory};
  std::optional<std::int64_t> expires;
  if (wanted.secondsToLive) {
    entry.expires = entry.created + std::chrono::seconds(*wanted.secondsToLive);
    expires = entry.expires->time_since_epoch().count();
  }
  try {
    entry.sandbox = std::make_shared<OpenSandbox>(id, makeStore(id, wanted), writers_);
    entry.timeOpened = entry.sandbox->openLog();
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
    const Lock lock(mutex_);
    auto& kept = entries_[id] = std::move(entry);
    if (!wanted.isInMemory) keepOpen(kept);
  }
  return describe(id);
}

std::shared_ptr<void> Registry::reserve(const std::string& id) {
  if (!reserved_.insert(id).second) return nullptr;
  return {this, [id](Registry* self) {
            const Lock lock(self->mutex_);
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
  const Lock lock(mutex_);
  const auto inMemory =
      std::ranges::count_if(entries_, [](const auto& each) { return each.second.isInMemory; });
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
    if (wanted.seed) storeSeed(database, *wanted.seed);
    if (wanted.clock) moveClock(database, clockTimeIn(*wanted.clock));
  });
  if (wanted.isInMemory) return draft;
  draft->copyTo(storePathOf(id));
  return openStore(id);
}

void Registry::remove(const std::string& id) {
  if (id == defaultID) {
    throw HttpError(409, "default-sandbox", "The default sandbox can be reset, not deleted.");
  }
  const auto reserved = [&] {
    const Lock lock(mutex_);
    return entries_.contains(id) ? reserve(id) : nullptr;
  }();
  if (!reserved) throw noSuchSandbox();
  registry_->write(
      [&](Database& database) { database.run("DELETE FROM sandboxes WHERE id = ?", id); });
  const auto removed = [&] {
    const Lock lock(mutex_);
    std::erase(open_, &entries_.at(id));
    return entries_.extract(id);
  }();
  const auto& entry = removed.mapped();
  if (const auto sandbox = entry.sandbox ? entry.sandbox : entry.closing.lock())
    sandbox->markRemoved();
  removeFiles(id);
}

void Registry::removeFiles(const std::string& id) const {
  const auto path = storePathOf(id);
  for (const std::string_view end : {"", "-wal", "-shm", ".log"}) {
    std::error_code ignored;
    fs::remove(path + std::string(end), ignored);
  }
}

// Snapshots.

SnapshotDescription Registry::snapshot(const std::string& id) {
  const auto created = machineTime();
  SnapshotDescription made{"snp_" + randomLetters(20), timeText(created), id};
  open(id)->store().copyTo(snapshotPathOf(made.id));
  try {
    registry_->write([&](Database& database) {
      database.run("INSERT INTO snapshots (id, created, sandbox) VALUES (?, ?, ?)", made.id,
                   std::int64_t{created.time_since_epoch().count()}, id);
    });
  } catch (const StoreFailure&) {
    fs::remove(snapshotPathOf(made.id));
    throw;
  }
  return made;
}

std::vector<SnapshotDescription> Registry::snapshots() const {
  return registry_->read([](Database& database) {
    std::vector<SnapshotDescription> all;
    auto row = database.query("SELECT id, created, sandbox FROM snapshots ORDER BY created, id");
    while (row.next()) {
      const std::chrono::sys_seconds created{std::chrono::seconds(row.integer(1))};
      all.push_back({row.text(0), timeText(created), row.text(2)});
    }
    return all;
  });
}

void Registry::removeSnapshot(const std::string& snapshot) const {
  const auto path = requireSnapshot(snapshot);
  registry_->write(
      [&](Database& database) { database.run("DELETE FROM snapshots WHERE id = ?", snapshot); });
  fs::remove(path);
}

void Registry::restore(const std::string& id, const std::string& snapshot, OpenSandbox::Done then) {
  const auto target = open(id);
  target->runAlone(
      [target = target.get(), path = requireSnapshot(snapshot)] { target->restore(path); },
      std::move(then));
}

std::string Registry::requireSnapshot(const std::string& snapshot) const {
  const bool isKnown = registry_->read([&](Database& database) {
    return database.query("SELECT 1 FROM snapshots WHERE id = ?", snapshot).next();
  });
  if (!isKnown) throw HttpError(404, "no-such-snapshot", "There is no snapshot of this name.");
  return snapshotPathOf(snapshot);
}

std::string Registry::snapshotPathOf(const std::string& snapshot) const {
  return folder_ + "/snapshots/" + snapshot + ".sqlite";
}

}  // namespace hlv::sandbox::server
