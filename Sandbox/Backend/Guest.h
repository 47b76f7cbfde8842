// A guest of the sandbox. Private to the sandbox.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {

/// Answers what the backend has at that moment.
///
/// Threading: any.
class Guest final : public HLVSDKGuest {
 public:
  Guest(std::string email, std::shared_ptr<Store> store)
      : email_(std::move(email)), store_(std::move(store)) {}

  NullableString email() const override { return email_; }
  NullableString paylevenToken() const override;
  NullableList<HLVSDKCreditCard> creditCards() const override;
  /// Grows with every change. Whoever reads it before the rest knows at least as much as it says.
  std::int64_t revision() const;

 private:
  const std::string email_;
  const std::shared_ptr<Store> store_;
};

}  // namespace hlv::sandbox
