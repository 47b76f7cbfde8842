#include "Sandbox/Cards/EnteredCard.h"

#include <cstring>

#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Errors/SandboxError.h"

namespace hlv::sandbox {
namespace {

void wipe(std::string& secret) { explicit_bzero(secret.data(), secret.capacity()); }

void wipe(CardFields& fields) {
  wipe(fields.pan);
  wipe(fields.cvv);
}

}  // namespace

std::shared_ptr<EnteredCard> EnteredCard::make(CardFields fields) {
  auto card = std::shared_ptr<EnteredCard>(new EnteredCard(normalised(fields)));
  wipe(fields);
  return card;
}

EnteredCard::EnteredCard(CardFields fields) : fields_(fields) { wipe(fields); }

EnteredCard::~EnteredCard() { wipe(fields_); }

NullableString EnteredCard::pan() const { return fields_.pan; }
NullableString EnteredCard::expiryMonth() const { return fields_.expiryMonth; }
NullableString EnteredCard::expiryYear() const { return fields_.expiryYear; }
NullableString EnteredCard::cvv() const { return fields_.cvv; }
NullableString EnteredCard::cardHolder() const { return fields_.cardHolder; }
NullableString EnteredCard::instrumentUseCaseString() const { return fields_.useCase; }

std::optional<BrokenRule> EnteredCard::brokenRule(YearMonth month) const {
  auto broken = sandbox::brokenRule(fields_, month);
  if (!broken && !isUseCase(fields_.useCase)) broken = unknownUseCase();
  return broken;
}

bool EnteredCard::isValid(ErrorPtr* error) const {
  const auto broken = brokenRule(Calendar::today());
  if (!broken) return true;
  if (error) {
    *error = SandboxError::make(paymentErrorDomain, broken->code, broken->sentence, broken->detail);
  }
  return false;
}

void EnteredCard::setExternalIdentifier(const NullableString& identifier) {
  const std::lock_guard lock(mutex_);
  externalIdentifier_ = identifier;
}

NullableString EnteredCard::externalIdentifier() const {
  const std::lock_guard lock(mutex_);
  return externalIdentifier_;
}

}  // namespace hlv::sandbox
