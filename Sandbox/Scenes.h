// The ways in which a backend and a provider come apart. Private to the sandbox.
//
// Threading: any.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Provider/Provider.h"

namespace hlv::sandbox {

/// For one guest. What it changes passes no service, so no fault meets it.
class Scenes {
 public:
  Scenes(Backend& backend, Provider& provider, std::string email)
      : backend_(backend), provider_(provider), email_(std::move(email)) {}

  static std::vector<std::string> names();
  /// Returns one plain sentence when it cannot, or an empty string. Throws `Refusal`.
  std::string make(const std::string& name);

 private:
  std::string withNewestCard(const std::function<bool(const BackendCard&)>& change);

  Backend& backend_;
  Provider& provider_;
  const std::string email_;
};

}  // namespace hlv::sandbox
