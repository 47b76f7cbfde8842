// The session of the signed-in guest. Private to the sandbox.
#pragma once

#include <memory>
#include <utility>

#include "Host/Halvo_Authentication/HLVSession.h"
#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {

/// Authorised for as long as its guest is the one signed in.
///
/// Threading: any.
class Session final : public HLVSession {
 public:
  Session(std::string email, std::shared_ptr<Store> store)
      : email_(std::move(email)), store_(std::move(store)) {}

  bool isAuthorized() const override {
    return store_->readOrNothing(backend::signedInEmail) == email_;
  }

 private:
  const std::string email_;
  const std::shared_ptr<Store> store_;
};

}  // namespace hlv::sandbox
