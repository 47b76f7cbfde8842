#include "Sandbox/Store/KeptReplies.h"

#include "Sandbox/Store/Identifiers.h"
#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox {
namespace {

constexpr std::int64_t repliesKept = 10'000;
constexpr const char* saltSetting = "kept-replies-salt";

}  // namespace

std::optional<KeptReply> findKeptReply(Database& database, const std::string& key) {
  auto row = database.query("SELECT request, status, body FROM kept_replies WHERE key = ?", key);
  if (!row.next()) return std::nullopt;
  return KeptReply{row.text(0), row.integer(1), row.text(2)};
}

void keepReply(Database& database, const std::string& key, const KeptReply& reply) {
  database.run("INSERT INTO kept_replies (key, request, status, body) VALUES (?, ?, ?, ?)", key,
               reply.request, reply.status, reply.body);
  database.run("DELETE FROM kept_replies WHERE number <= ?", database.lastRow() - repliesKept);
}

void forgetKeptReplies(Database& database) { database.run("DELETE FROM kept_replies"); }

std::string keptRepliesSalt(Database& database) {
  if (const auto known = readSetting(database, saltSetting)) return *known;
  auto salt = randomLetters(32);
  writeSetting(database, saltSetting, salt);
  return salt;
}

}  // namespace hlv::sandbox
