// A billing address as a person typed it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKPaymentBillingAddress.h"

namespace hlv::sandbox {

/// A missing field is left alone by an update.
struct AddressFields {
  std::optional<std::string> street;
  std::optional<std::string> city;
  std::optional<std::string> countryCode;
  std::optional<std::string> zip;
  std::optional<std::string> businessName;
};

/// Threading: immutable; any.
class EnteredAddress final : public HLVSDKPaymentBillingAddress {
 public:
  [[nodiscard]] static std::shared_ptr<EnteredAddress> make(AddressFields fields) {
    return std::shared_ptr<EnteredAddress>(new EnteredAddress(std::move(fields)));
  }

  NullableString countryCode() const override { return fields_.countryCode; }
  NullableString street() const override { return fields_.street; }
  NullableString city() const override { return fields_.city; }
  NullableString zip() const override { return fields_.zip; }
  NullableString businessName() const override { return fields_.businessName; }

 private:
  explicit EnteredAddress(AddressFields fields) : fields_(std::move(fields)) {}

  const AddressFields fields_;
};

}  // namespace hlv::sandbox
