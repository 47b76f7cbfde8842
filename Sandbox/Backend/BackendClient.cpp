#include "Sandbox/Backend/BackendClient.h"

#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"
#include "Platform/Send.h"
#include "Sandbox/Backend/UpdateGuestRequest.h"
#include "Sandbox/ErrorCodes.h"

namespace hlv::sandbox {
namespace {

ErrorPtr invalidRequest(const std::string& sentence) {
  return SandboxError::make(backendErrorDomain, BackendErrorCode::invalidRequest, sentence);
}

NullableString emailOf(const std::shared_ptr<HLVSDKGuest>& guest) {
  return send(guest, &HLVSDKGuest::email);
}

/// A request as it was when it was handed over: its body, or why it cannot be sent.
struct AddRequest {
  Dictionary body;
  ErrorPtr problem;
};

AddRequest readRequest(const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& request) {
  if (!request) return {{}, invalidRequest("There is no request to add a card.")};
  ErrorPtr problem;
  if (request->isValid(&problem)) return {request->JSONRepresentation(), nullptr};
  return {{}, problem ? problem : invalidRequest("The request to add a card is not valid.")};
}

NullableString useCaseOf(const Dictionary& body) {
  const auto* card = valueForKey(body, "credit_card").dictionary();
  const auto* useCase = card ? valueForKey(*card, "use_case").string() : nullptr;
  return useCase ? NullableString(*useCase) : std::nullopt;
}

}  // namespace

BackendClient::BackendClient(std::shared_ptr<Backend> backend,
                             const Service::Surroundings& surroundings)
    : backend_(std::move(backend)),
      service_("backend", backendErrorDomain, Lane::backend, surroundings) {}

void BackendClient::updateCurrentGuestWithRequest(
    const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
    HLVSDKGuestCompletion completion) {
  const auto known = std::dynamic_pointer_cast<UpdateGuestRequest>(request);
  const auto token = known ? known->paymentToken() : std::nullopt;
  service_.take(
      {"updateCurrentGuestWithRequest", {}, ""}, std::move(completion),
      [backend = backend_, token](const std::string&) { return backend->updateGuest(token); });
}

void BackendClient::addCreditCardForGuest(
    const std::shared_ptr<HLVSDKGuest>& guest,
    const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& requestInfo,
    HLVSDKGuestCardCompletion completion) {
  auto request = readRequest(requestInfo);
  Call call{"addCreditCardForGuest", useCaseOf(request.body), ""};
  service_.take(std::move(call), std::move(completion),
                [backend = backend_, email = emailOf(guest),
                 request = std::move(request)](const std::string&) {
                  if (request.problem) throw Refusal{request.problem};
                  return backend->addCard(email, request.body);
                });
}

void BackendClient::deleteCreditCardWithID(const NullableString& ID,
                                           const std::shared_ptr<HLVSDKGuest>& guest,
                                           HLVSDKGuestCompletion completion) {
  service_.take({"deleteCreditCardWithID", {}, ID.value_or("")}, std::move(completion),
                [backend = backend_, ID, email = emailOf(guest)](const std::string&) {
                  return backend->deleteCard(ID, email);
                });
}

void BackendClient::updateCreditCard(const NullableString& ID, const Dictionary& address,
                                     const std::shared_ptr<HLVSDKGuest>& guest,
                                     HLVSDKGuestCardCompletion completion) {
  service_.take({"updateCreditCard", {}, ID.value_or("")}, std::move(completion),
                [backend = backend_, ID, address, email = emailOf(guest)](const std::string&) {
                  return backend->updateCard(ID, address, email);
                });
}

void BackendClient::fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                                          HLVSDKCreditCardsCompletion completion) {
  service_.take({"fetchGuestCreditCards", {}, ""}, std::move(completion),
                [backend = backend_, email = emailOf(guest)](const std::string& variation) {
                  return backend->fetchCards(email, variation);
                });
}

}  // namespace hlv::sandbox
