// The session of the signed-in guest. Private to the sandbox.
#pragma once

#include <memory>
#include <utility>

#include "Host/Halvo_Authentication/HLVSession.h"
#include "Sandbox/Backend/Backend.h"

namespace hlv::sandbox {

/// Authorised for as long as its guest is the one signed in.
///
/// Threading: any.
class Session final : public HLVSession {
 public:
  Session(std::string email, std::shared_ptr<Backend> backend)
      : email_(std::move(email)), backend_(std::move(backend)) {}

  bool isAuthorized() const override { return backend_->signedInEmail() == email_; }

 private:
  const std::string email_;
  const std::shared_ptr<Backend> backend_;
};

}  // namespace hlv::sandbox
