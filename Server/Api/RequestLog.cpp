#include "Server/Api/RequestLog.h"

#include <algorithm>
#include <boost/url/grammar/hexdig_chars.hpp>
#include <chrono>
#include <string_view>
#include <utility>

#include "Sandbox/Masking/MaskedText.h"
#include "Sandbox/Records/Times.h"
#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox::server {
namespace {

constexpr std::int64_t requestsKept = 1'000;
constexpr const char* openSetting = "request-log-open";

// Between the parts of an event, and after each; no masked text holds them.
constexpr char partEnd = '\x1f';
constexpr char eventEnd = '\x1e';

/// As it is stored, which is written far more often than it is read. Times count from the
/// request's: the digits of a whole one may look like a piece of a card number.
std::string packed(const std::vector<Event>& events, std::int64_t start) {
  std::string text;
  for (const auto& event : events) {
    text += std::to_string(event.at - start);
    for (const auto& part :
         {event.from, event.to, maskedText(event.what), maskedText(event.result)}) {
      (text += partEnd) += part;
    }
    text += eventEnd;
  }
  return text;
}

Json unpacked(std::string_view text, std::int64_t start) {
  const auto take = [](std::string_view& rest, char end) {
    const auto part = rest.substr(0, rest.find(end));
    rest.remove_prefix(std::min(rest.size(), part.size() + 1));
    return part;
  };
  auto events = Json::array();
  while (!text.empty()) {
    auto event = take(text, eventEnd);
    const auto since = numberOf(take(event, partEnd)).value_or(0);
    Json json = {{"at", timeTextOfMilliseconds(start + since)}};
    for (const char* name : {"from", "to", "what", "result"}) json[name] = take(event, partEnd);
    events.push_back(std::move(json));
  }
  return events;
}

std::string percentDecoded(const std::string& target) {
  using boost::urls::grammar::hexdig_value;
  std::string text;
  for (std::size_t at = 0; at < target.size(); ++at) {
    const bool isEncoded = target[at] == '%' && at + 2 < target.size() &&
                           hexdig_value(target[at + 1]) >= 0 && hexdig_value(target[at + 2]) >= 0;
    if (!isEncoded) {
      text += target[at] == '+' ? ' ' : target[at];
      continue;
    }
    text += static_cast<char>(hexdig_value(target[at + 1]) * 16 + hexdig_value(target[at + 2]));
    at += 2;
  }
  return text;
}

/// Kept as it was sent, unless it has to be decoded for the mask to see the number in it. It may
/// be anything, for it is kept of requests that were rejected too.
std::string maskedTarget(const std::string& target) {
  const auto decoded = percentDecoded(target);
  return maskedText(holdsCardNumber(decoded) ? decoded : target);
}

constexpr const char* selection =
    "SELECT number, id, at, method, path, status, fault, microseconds, caller, listener, "
    "request_bytes, reply_bytes, code, events FROM requests WHERE ";

Json requestIn(const Query& row, const std::string& sandbox) {
  return {{"number", row.integer(0)},
          {"id", row.text(1)},
          {"at", timeTextOfMilliseconds(row.integer(2))},
          {"duration_ms", static_cast<double>(row.integer(7)) / 1'000},
          {"method", row.text(3)},
          {"path", row.text(4)},
          {"status", row.integer(5)},
          {"caller", row.text(8)},
          {"listener", row.text(9)},
          {"sandbox", sandbox},
          {"fault", orNull(row.textOrNull(6))},
          {"request_bytes", row.integer(10)},
          {"reply_bytes", row.integer(11)},
          {"code", orNull(row.textOrNull(12))}};
}

/// The least and the greatest status of "404" or "4xx".
std::pair<std::int64_t, std::int64_t> statusRange(const std::optional<std::string>& status) {
  if (!status) return {0, 999};
  if (status->size() == 3 && status->ends_with("xx")) {
    const auto hundreds = std::int64_t{status->front() - '0'} * 100;
    return {hundreds, hundreds + 99};
  }
  const auto exact = numberOf(*status).value_or(-1);
  return {exact, exact};
}

Json gapsIn(Database& database) {
  auto gaps = Json::array();
  auto row = database.query("SELECT after, found FROM request_gaps ORDER BY number");
  while (row.next()) {
    gaps.push_back({{"after", row.integer(0)}, {"found", timeTextOfMilliseconds(row.integer(1))}});
  }
  return gaps;
}

}  // namespace

void RequestLog::add(const FinishedRequest& finished, const std::string& listener,
                     const std::optional<FaultKind>& fault, std::vector<Event> events) {
  const auto& request = finished.request;
  using std::chrono::microseconds;
  auto insert = [id = request.id, at = millisecondOf(request.receivedAt),
                 status = std::int64_t{finished.status},
                 method = request.isHead ? "HEAD" : request.method, target = request.target, fault,
                 duration = std::chrono::duration_cast<microseconds>(finished.duration).count(),
                 caller = request.caller, listener,
                 requestBytes = static_cast<std::int64_t>(finished.requestBytes),
                 replyBytes = static_cast<std::int64_t>(finished.replyBytes),
                 code = finished.reply.code, events = std::move(events)](Database& database) {
    database.run(
        "INSERT OR IGNORE INTO requests (id, at, status, method, path, fault, microseconds, "
        "caller, listener, request_bytes, reply_bytes, code, events) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        id, at, status, maskedText(method), maskedTarget(target),
        fault ? std::optional(std::string(textOf(*fault))) : std::nullopt, duration, caller,
        listener, requestBytes, replyBytes, code.empty() ? std::nullopt : std::optional(code),
        packed(events, at));
  };
  const Lock lock(mutex_);
  news_.push_back(std::make_shared<const Insert>(std::move(insert)));
  // What would go at once when it was written need not be written.
  if (news_.size() <= static_cast<std::size_t>(requestsKept)) return;
  news_.pop_front();
  ++forgotten_;
}

bool RequestLog::hasNews() const {
  const Lock lock(mutex_);
  return !news_.empty();
}

void RequestLog::write(Database& database) {
  std::deque<std::shared_ptr<const Insert>> news;
  {
    const Lock lock(mutex_);
    news = news_;
    written_ = forgotten_ + static_cast<std::int64_t>(news.size());
  }
  for (const auto& insert : news) (*insert)(database);
  database.run("DELETE FROM requests WHERE number <= ?", last(database) - requestsKept);
}

void RequestLog::forgetWritten() {
  const Lock lock(mutex_);
  for (; forgotten_ < written_; ++forgotten_) news_.pop_front();
}

void RequestLog::open(Database& database) {
  if (readSetting(database, openSetting)) {
    database.run("INSERT INTO request_gaps (after, found) VALUES (?, ?)", last(database),
                 millisecondOf(std::chrono::system_clock::now()));
    database.run("DELETE FROM request_gaps WHERE number <= ?", database.lastRow() - requestsKept);
  }
  markOpen(database);
}

void RequestLog::markOpen(Database& database) { writeSetting(database, openSetting, "open"); }

void RequestLog::close(Database& database) { writeSetting(database, openSetting, std::nullopt); }

Json RequestLog::read(Database& database, const RequestFilter& filter, const std::string& sandbox) {
  const auto [least, greatest] = statusRange(filter.status);
  auto requests = Json::array();
  Json next;
  auto row = database.query(
      std::string(selection).append(
          "number > ? AND (? IS NULL OR method = ?) AND status BETWEEN ? AND ? "
          "AND (? IS NULL OR instr(path, ?) > 0) "
          "AND (? IS NULL OR (? = 'any' AND fault IS NOT NULL) OR (? = 'none' AND fault IS NULL) "
          "OR fault = ?) ORDER BY number LIMIT ?"),
      filter.after, filter.method, filter.method, least, greatest, filter.path, filter.path,
      filter.fault, filter.fault, filter.fault, filter.fault, filter.limit + 1);
  while (row.next()) {
    if (static_cast<std::int64_t>(requests.size()) == filter.limit) {
      next = requests.back()["number"];
      break;
    }
    requests.push_back(requestIn(row, sandbox));
  }
  return {{"requests", std::move(requests)}, {"next", next}, {"gaps", gapsIn(database)}};
}

std::optional<Json> RequestLog::find(Database& database, const std::string& id,
                                     const std::string& sandbox) {
  auto row = database.query(std::string(selection) + "id = ?", id);
  if (!row.next()) return std::nullopt;
  auto request = requestIn(row, sandbox);
  request["events"] = unpacked(row.text(13), row.integer(2));
  return request;
}

std::int64_t RequestLog::last(Database& database) {
  return database.integer("SELECT coalesce(max(number), 0) FROM requests");
}

}  // namespace hlv::sandbox::server
