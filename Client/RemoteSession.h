// The session of this side with a backend elsewhere. Private to this folder.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "Sandbox/Sandbox.h"
#include "Values/NullableString.h"

namespace hlv::client {

/// Kept in the local sandbox, one for each backend, so that it outlives the process.
///
/// Threading: any.
class RemoteSession {
 public:
  RemoteSession(std::shared_ptr<sandbox::Sandbox> local, const std::string& backendURL)
      : local_(std::move(local)), note_("session at " + backendURL) {}

  /// Missing when there is none; requests then go without.
  NullableString token() const {
    auto token = local_->note(note_);
    return length(token) > 0 ? token : std::nullopt;
  }
  /// Returns the token that was kept before.
  NullableString exchange(const NullableString& token) {
    auto before = this->token();
    if (before != token) local_->setNote(note_, token.value_or(""));
    return before;
  }

 private:
  const std::shared_ptr<sandbox::Sandbox> local_;
  const std::string note_;
};

}  // namespace hlv::client
