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
      "CREATE TABLE IF NOT EXISTS kept_answers (number INTEGER PRIMARY KEY AUTOINCREMENT, "
      "key TEXT NOT NULL UNIQUE, request TEXT NOT NULL, status INTEGER, body TEXT)");
}

std::string randomLetters() {
  std::random_device device;
  std::uniform_int_distribution<int> letter('a', 'z');
  std::string letters;
  for (int i = 0; i < 32; ++i) letters += static_cast<char>(letter(device));
  return letters;
}

}  // namespace

KeptAnswers::Claim KeptAnswers::claim(const std::string& key, const std::string& request) {
  return store_->write([&](Database& database) -> Claim {
    makeTable(database);
    {
      auto row =
          database.query("SELECT request, status, body FROM kept_answers WHERE key = ?", key);
      if (row.next()) {
        if (row.text(0) != request) return {State::differs, std::nullopt};
        const auto status = row.integerOrNull(1);
        if (!status) return {State::unfinished, std::nullopt};
        return {State::answered, Answer{*status, row.text(2)}};
      }
    }
    database.run("INSERT INTO kept_answers (key, request) VALUES (?, ?)", key, request);
    database.run("DELETE FROM kept_answers WHERE number <= ?", database.lastRow() - answersKept);
    return {State::claimed, std::nullopt};
  });
}

void KeptAnswers::keep(const std::string& key, const Answer& answer) {
  store_->write([&](Database& database) {
    database.run("UPDATE kept_answers SET status = ?, body = ? WHERE key = ?", answer.status,
                 answer.body, key);
  });
}

void KeptAnswers::release(const std::string& key) {
  store_->write([&](Database& database) {
    database.run("DELETE FROM kept_answers WHERE key = ? AND status IS NULL", key);
  });
}

void KeptAnswers::forgetAll() {
  store_->write([](Database& database) {
    makeTable(database);
    database.run("DELETE FROM kept_answers");
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
