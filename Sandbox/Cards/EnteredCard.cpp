#include "Sandbox/Cards/EnteredCard.h"

#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Errors/SandboxError.h"
#include "Values/Wiped.h"

namespace hlv::sandbox {
namespace {

void wipeSecrets(CardFields& fields) {
  wipe(fields.pan);
  wipe(fields.cvv);
}

}  // namespace

std::shared_ptr<EnteredCard> EnteredCard::make(CardFields fields) {
  auto card = std::shared_ptr<EnteredCard>(new EnteredCard(fields));
  wipeSecrets(fields);
  return card;
}

EnteredCard::EnteredCard(const CardFields& fields) : fields_(normalised(fields)) {}

EnteredCard::~EnteredCard() { wipeSecrets(fields_); }

NullableString EnteredCard::pan() const { return fields_.pan; }
NullableString EnteredCard::expiryMonth() const { return fields_.expiryMonth; }
NullableString EnteredCard::expiryYear() const { return fields_.expiryYear; }
NullableString EnteredCard::cvv() const { return fields_.cvv; }
NullableString EnteredCard::cardHolder() const { return fields_.cardHolder; }
NullableString EnteredCard::instrumentUseCaseString() const { return fields_.useCase; }

std::optional<BrokenRule> EnteredCard::brokenRule(std::chrono::year_month month) const {
  auto broken = sandbox::brokenRule(fields_, month);
  if (!broken && !isUseCase(fields_.useCase)) broken = unknownUseCase();
  return broken;
}

bool EnteredCard::isValid(ErrorPtr* error) const {
  const auto broken = brokenRule(monthOf(std::chrono::system_clock::now()));
  if (!broken) return true;
  if (error) {
    *error = SandboxError::make(paymentErrorDomain, broken->code, broken->sentence, broken->detail);
  }
  return false;
}

void EnteredCard::setExternalIdentifier(const NullableString& identifier) {
  const Lock lock(mutex_);
  externalIdentifier_ = identifier;
}

NullableString EnteredCard::externalIdentifier() const {
  const Lock lock(mutex_);
  return externalIdentifier_;
}

}  // namespace hlv::sandbox
