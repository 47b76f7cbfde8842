// What is new, for one page that listens. Private to the server.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Sandbox/Journal.h"
#include "Server/Api/World.h"

namespace hlv::server {

/// Two kinds of server-sent events: "story", with the operations and events that are new, and
/// "truth", when something else has changed. The first story is the whole one, and says so: a page
/// that comes again, perhaps to another process, need not know where it was.
///
/// Threading: one thread at a time.
class LiveStory {
 public:
  explicit LiveStory(std::shared_ptr<World> world)
      : world_(std::move(world)), journal_(world_->sharedStore(), "start") {}

  /// Empty when nothing is new.
  std::string next();

 private:
  std::string newStory();
  std::string newTruth();

  const std::shared_ptr<World> world_;
  const sandbox::Journal journal_;
  bool hasBegun_ = false;
  std::int64_t changes_ = 0;
  std::int64_t told_ = 0;
  std::string truth_;
};

}  // namespace hlv::server
