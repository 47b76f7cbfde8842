#include <filesystem>
#include <utility>

#include "Sandbox/Records/Times.h"
#include "Sandbox/Store/Clock.h"
#include "Sandbox/Store/Identifiers.h"
#include "Server/Api/Registry.h"
#include "Server/Http/HttpError.h"

namespace hlv::server {

namespace fs = std::filesystem;
using sandbox::Database;
using sandbox::SnapshotDescription;

SnapshotDescription Registry::snapshot(const std::string& id) {
  const auto created = sandbox::machineTime();
  SnapshotDescription made{"snp_" + sandbox::randomLetters(20), sandbox::timeText(created), id};
  world(id)->store().copyTo(snapshotPathOf(made.id));
  try {
    registry_->write([&](Database& database) {
      database.run("INSERT INTO snapshots (id, created, sandbox) VALUES (?, ?, ?)", made.id,
                   std::int64_t{created.time_since_epoch().count()}, id);
    });
  } catch (const sandbox::StoreFailure&) {
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
      all.push_back({row.text(0), sandbox::timeText(created), row.text(2)});
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

void Registry::restore(const std::string& id, const std::string& snapshot, World::Done then) {
  const auto target = world(id);
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

}  // namespace hlv::server
