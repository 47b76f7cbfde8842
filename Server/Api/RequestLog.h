// Every request to one sandbox, rejected ones included. Private to the server.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Sandbox/Calls/Journal.h"
#include "Sandbox/Faults/Fault.h"
#include "Sandbox/JSON/Json.h"
#include "Sandbox/Store/Database.h"
#include "Server/Http/HttpMessages.h"
#include "Values/Mutex.h"

namespace hlv::sandbox::server {

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

  /// `fault` is the kind that the request met; `events` are what the services did for it. Texts are
  /// masked where they are written.
  void add(const FinishedRequest& finished, const std::string& listener,
           const std::optional<FaultKind>& fault, std::vector<Event> events);
  bool hasNews() const;
  /// Writes what was added, which stays new until `forgetWritten`: a write may be undone.
  void write(Database& database);
  /// Once what was written last is committed.
  void forgetWritten();

  /// Marks the log as open; records a gap where it was not closed before.
  static void open(Database& database);
  static void markOpen(Database& database);
  static void close(Database& database);

  /// {"requests", "next", "gaps"}, oldest first, without their events.
  static Json read(Database& database, const RequestFilter& filter, const std::string& sandbox);
  /// One with its events; missing for an unknown id.
  static std::optional<Json> find(Database& database, const std::string& id,
                                  const std::string& sandbox);
  static std::int64_t last(Database& database);

 private:
  using Insert = std::function<void(Database&)>;

  mutable Mutex mutex_;
  std::deque<std::shared_ptr<const Insert>> news_ HLV_GUARDED_BY(mutex_);
  /// How many have left `news_`, and how many had come when they were written last.
  std::int64_t forgotten_ HLV_GUARDED_BY(mutex_) = 0;
  std::int64_t written_ HLV_GUARDED_BY(mutex_) = 0;
};

}  // namespace hlv::sandbox::server
