#include "Server/Api/Snapshots.h"

#include <filesystem>
#include <utility>

#include "Sandbox/Records/Times.h"
#include "Sandbox/Store/Clock.h"
#include "Sandbox/Store/Identifiers.h"
#include "Server/Http/HttpError.h"

namespace hlv::server {

namespace fs = std::filesystem;
using sandbox::Database;
using sandbox::SnapshotDescription;

Snapshots::Snapshots(std::string folder, std::shared_ptr<sandbox::Store> registry)
    : folder_(std::move(folder)), registry_(std::move(registry)) {
  fs::create_directories(folder_);
}

SnapshotDescription Snapshots::take(const std::string& sandbox, sandbox::Store& store) const {
  const auto created = sandbox::machineTime();
  SnapshotDescription made{"snp_" + sandbox::randomLetters(20), sandbox::timeText(created),
                           sandbox};
  store.copyTo(fileOf(made.id));
  try {
    registry_->write([&](Database& database) {
      database.run("INSERT INTO snapshots (id, created, sandbox) VALUES (?, ?, ?)", made.id,
                   std::int64_t{created.time_since_epoch().count()}, sandbox);
    });
  } catch (const sandbox::StoreFailure&) {
    fs::remove(fileOf(made.id));
    throw;
  }
  return made;
}

std::vector<SnapshotDescription> Snapshots::list() const {
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

void Snapshots::remove(const std::string& snapshot) const {
  const auto path = pathOf(snapshot);
  registry_->write(
      [&](Database& database) { database.run("DELETE FROM snapshots WHERE id = ?", snapshot); });
  fs::remove(path);
}

std::string Snapshots::pathOf(const std::string& snapshot) const {
  const bool isKnown = registry_->read([&](Database& database) {
    return database.query("SELECT 1 FROM snapshots WHERE id = ?", snapshot).next();
  });
  if (!isKnown) throw HttpError(404, "no-such-snapshot", "There is no snapshot of this name.");
  return fileOf(snapshot);
}

std::string Snapshots::fileOf(const std::string& snapshot) const {
  return folder_ + "/" + snapshot + ".sqlite";
}

}  // namespace hlv::server
