#include "Sandbox/Store/KeptAnswers.h"

#include <random>

#include "Sandbox/Store/Settings.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {
namespace {

constexpr std::int64_t answersKept = 10'000;
constexpr const char* saltSetting = "kept-answers-salt";

/// Made when it is first needed: most stores serve one process only.
void makeTable(Database& database) {
  database.run(
      "CREATE TABLE IF NOT EXISTS answered_requests (number INTEGER PRIMARY KEY AUTOINCREMENT, "
      "key TEXT NOT NULL UNIQUE, request TEXT NOT NULL, status INTEGER NOT NULL, "
      "body TEXT NOT NULL)");
}

std::string randomLetters() {
  std::random_device device;
  std::uniform_int_distribution<int> letter('a', 'z');
  std::string letters;
  for (int i = 0; i < 32; ++i) letters += static_cast<char>(letter(device));
  return letters;
}

}  // namespace

std::optional<KeptAnswers::Answer> KeptAnswers::find(const std::string& key) {
  return store_->write([&](Database& database) -> std::optional<Answer> {
    makeTable(database);
    auto row =
        database.query("SELECT request, status, body FROM answered_requests WHERE key = ?", key);
    if (!row.next()) return std::nullopt;
    return Answer{row.text(0), row.integer(1), row.text(2)};
  });
}

void KeptAnswers::keep(const std::string& key, const Answer& answer) {
  store_->write([&](Database& database) {
    makeTable(database);
    database.run("INSERT INTO answered_requests (key, request, status, body) VALUES (?, ?, ?, ?)",
                 key, answer.request, answer.status, answer.body);
    database.run("DELETE FROM answered_requests WHERE number <= ?",
                 database.lastRow() - answersKept);
  });
}

void KeptAnswers::asOne(const std::function<void()>& body) {
  store_->write([&](Database&) { body(); });
}

void KeptAnswers::forgetAll() {
  store_->write([](Database& database) {
    makeTable(database);
    database.run("DELETE FROM answered_requests");
  });
}

std::string KeptAnswers::salt() {
  const auto known =
      store_->read([](Database& database) { return readSetting(database, saltSetting); });
  if (known) return *known;
  return store_->write([](Database& database) {
    auto salt = readSetting(database, saltSetting);
    if (!salt) {
      salt = randomLetters();
      writeSetting(database, saltSetting, salt);
    }
    return *salt;
  });
}

}  // namespace hlv::sandbox
