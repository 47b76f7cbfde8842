// A card as the backend returns it. Private to the sandbox, server and client.
#pragma once

#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Sandbox/Records/BackendCard.h"

namespace hlv::sandbox {

/// Threading: immutable; any.
class StoredCard final : public HLVSDKCreditCard {
 public:
  explicit StoredCard(BackendCard card) : card_(std::move(card)) {}

  NullableString halvoID() const override { return card_.halvoID; }
  NullableString lastFourDigits() const override { return card_.lastFourDigits; }
  NullableString brand() const override { return card_.brand; }
  NullableString useCase() const override { return card_.useCase; }
  NullableString externalIdentifier() const override { return card_.externalIdentifier; }

  const BackendCard& values() const { return card_; }

 private:
  const BackendCard card_;
};

}  // namespace hlv::sandbox
