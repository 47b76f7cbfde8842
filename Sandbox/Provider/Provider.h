// The payment provider: its users and their instruments. Private to the sandbox.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "Platform/Error.h"
#include "Platform/List.h"
#include "Platform/NullableString.h"
#include "Sandbox/Provider/CardInstruments.h"
#include "Sandbox/ProviderInstrument.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {

/// Keeps a masked number of each card and never its security code. The operations of the service
/// throw `Refusal`; a variation is the kind of a fault that changes what is stored or answered.
///
/// Threading: any.
class Provider {
 public:
  using Instrument = std::shared_ptr<PLVCreditCardPaymentInstrument>;
  using TokenAnswer = std::tuple<NullableString, ErrorPtr>;
  using ErrorAnswer = std::tuple<ErrorPtr>;
  using ListAnswer = std::tuple<NullableList<PLVCreditCardPaymentInstrument>, ErrorPtr>;

  explicit Provider(std::shared_ptr<Store> store) : store_(std::move(store)) {}

  /// A missing or empty key registers nobody.
  void registerKey(const NullableString& key) { isRegistered_ = length(key) > 0; }

  /// An address that has a token keeps it.
  TokenAnswer createUserToken(const NullableString& email, const Instrument& instrument,
                              const NullableString& useCase, const std::string& variation);
  ErrorAnswer addInstrument(const Instrument& instrument, const NullableString& token,
                            const NullableString& useCase, const std::string& variation);
  ListAnswer listInstruments(const NullableString& token, const NullableString& useCase,
                             const std::string& variation) const;
  ErrorAnswer removeInstrument(const Instrument& instrument, const NullableString& useCase,
                               const NullableString& token);

  std::vector<ProviderInstrument> instrumentsOf(const std::string& email) const;
  /// What follows needs no registration. Stores an instrument for a user whom the provider knows.
  void plant(const std::string& email, const std::shared_ptr<EnteredCard>& card);
  /// Loses an instrument, or stores it once more under another identifier. False when there is
  /// none.
  bool lose(const std::string& identifier);
  bool storeAgain(const std::string& identifier);

 private:
  void requireRegistration() const;

  const std::shared_ptr<Store> store_;
  std::atomic<bool> isRegistered_{false};
};

}  // namespace hlv::sandbox
