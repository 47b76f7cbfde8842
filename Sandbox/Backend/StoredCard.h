// A card as the backend returns it. Private to the sandbox, server and client.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Sandbox/Records/BackendCard.h"
#include "Values/List.h"

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

inline List<HLVSDKCreditCard> objectsOf(const std::vector<BackendCard>& cards) {
  List<HLVSDKCreditCard> objects;
  for (const auto& card : cards) objects.push_back(std::make_shared<StoredCard>(card));
  return objects;
}

}  // namespace hlv::sandbox
