// What is new in one sandbox, for pages that listen. Private to the server.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Sandbox/Calls/Journal.h"
#include "Server/Api/World.h"

namespace hlv::server {

/// Three kinds of server-sent events: "timeline", with the operations and events that are new,
/// "requests", with what is new in the request log, and "stored", when something else has changed.
/// The first of each kind is whole, and says so: a page that comes again, perhaps to another
/// process, need not know where it was.
///
/// Threading: one thread at a time.
class LiveFeed {
 public:
  explicit LiveFeed(std::shared_ptr<World> world)
      : world_(std::move(world)), journal_(world_->sharedStore(), "start") {}

  /// Empty when nothing is new.
  std::string next();

 private:
  /// The events of a snapshot, and of an empty store, are other ones.
  void startAgainAfterRestore();
  std::string newEvents();
  std::string newRequests();
  std::string newData();

  const std::shared_ptr<World> world_;
  const sandbox::Journal journal_;
  bool hasBegun_ = false;
  bool hasMore_ = true;
  std::int64_t changes_ = 0;
  std::int64_t lastEvent_ = 0;
  std::int64_t lastRequest_ = 0;
  std::string stored_;
};

}  // namespace hlv::server
