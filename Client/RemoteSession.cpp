#include "Client/RemoteSession.h"

namespace hlv::client {

NullableString RemoteSession::token() const {
  auto token = local_->note(note_);
  return length(token) > 0 ? token : std::nullopt;
}

NullableString RemoteSession::exchange(const NullableString& token) {
  auto before = this->token();
  if (before != token) local_->setNote(note_, token.value_or(""));
  return before;
}

}  // namespace hlv::client
