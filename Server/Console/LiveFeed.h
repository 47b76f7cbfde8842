// What is new in some sandboxes, for the pages of a browser. Private to the server.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>

#include "Server/Api/Registry.h"

namespace hlv::server {

class SandboxFeed;

/// Server-sent events whose data names its sandbox: "state", which is "live" or "deleted";
/// "timeline", with the operations and events that are new; "requests", with what is new in the
/// request log; and "stored", when something else has changed. The first of each kind is whole, and
/// says so: a page that comes again, perhaps to another process, need not know where it was.
///
/// Threading: one thread at a time. The registry outlives the feed.
class LiveFeed {
 public:
  LiveFeed(Registry& registry, const std::set<std::string>& sandboxes);
  ~LiveFeed();
  LiveFeed(const LiveFeed&) = delete;
  LiveFeed& operator=(const LiveFeed&) = delete;

  /// Empty when nothing is new.
  std::string next();

 private:
  Registry& registry_;
  std::map<std::string, std::unique_ptr<SandboxFeed>> feeds_;
};

}  // namespace hlv::server
