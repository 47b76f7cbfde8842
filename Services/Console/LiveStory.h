// What is new, for one page that listens. Private to the services.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Sandbox/Sandbox.h"

namespace hlv::services {

/// Two kinds of server-sent events: "story", with the operations and events that are new, and
/// "truth", when something else has changed. The first story is the whole one, and says so: a page
/// that comes again, perhaps to another process, need not know where it was.
///
/// Threading: one thread at a time.
class LiveStory {
 public:
  explicit LiveStory(std::shared_ptr<sandbox::Sandbox> sandbox) : sandbox_(std::move(sandbox)) {}

  /// Empty when nothing is new.
  std::string next();

 private:
  std::string newStory();
  std::string newTruth();

  const std::shared_ptr<sandbox::Sandbox> sandbox_;
  bool hasBegun_ = false;
  std::int64_t changes_ = 0;
  std::int64_t told_ = 0;
  std::string truth_;
};

}  // namespace hlv::services
