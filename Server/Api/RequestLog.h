// Every request to one sandbox, rejected ones included. Private to the server.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Sandbox/Calls/Journal.h"
#include "Sandbox/JSON/Json.h"
#include "Sandbox/Store/Database.h"

namespace hlv::server {

using sandbox::Json;

/// One request and what became of it. Texts are masked where they are written.
struct RequestRecord {
  std::string id;
  /// Milliseconds since 1970.
  std::int64_t at = 0;
  std::int64_t microseconds = 0;
  std::string method;
  std::string path;
  /// 0 where no whole reply left.
  int status = 0;
  std::string caller;
  std::string listener;
  /// The kind of the fault that the request met.
  std::optional<std::string> fault;
  std::size_t requestBytes = 0;
  std::size_t replyBytes = 0;
  /// The error's code.
  std::string code;
  /// What the services did for it.
  std::vector<sandbox::Event> events;
};

/// Which requests are asked for.
struct RequestFilter {
  std::int64_t after = 0;
  std::int64_t limit = 100;
  std::optional<std::string> method = {};
  /// "404", or "4xx".
  std::optional<std::string> status = {};
  /// A part of the path.
  std::optional<std::string> path = {};
  /// A fault's kind, "any" or "none".
  std::optional<std::string> fault = {};
};

/// Keeps the last thousand requests. New ones are held in memory until they are written in one
/// batch, together with an effect or without a wait for the disk, so that a process which ends
/// without closing the log may lose the last of them. Then the log says so.
///
/// Threading: any; members that take a database run inside `Store::write` or, where they only read,
/// `Store::read`.
class RequestLog {
 public:
  /// What of a store belongs to the log, and to no snapshot.
  static constexpr const char* tables[] = {"requests", "request_gaps"};

  void add(RequestRecord record);
  bool hasNews() const;
  /// Writes what was added.
  void write(sandbox::Database& database);

  /// Marks the log as open; records a gap where it was not closed before.
  static void open(sandbox::Database& database);
  static void markOpen(sandbox::Database& database);
  static void close(sandbox::Database& database);

  /// {"requests", "next", "gaps"}, oldest first, without their events.
  static Json read(sandbox::Database& database, const RequestFilter& filter,
                   const std::string& sandbox);
  /// One with its events; missing for an unknown id.
  static std::optional<Json> find(sandbox::Database& database, const std::string& id,
                                  const std::string& sandbox);
  static std::int64_t last(sandbox::Database& database);

 private:
  mutable std::mutex mutex_;
  std::deque<RequestRecord> news_;
};

}  // namespace hlv::server
