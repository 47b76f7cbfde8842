#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"

#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"
#include "Host/Halvo_Errors/HLVErrorFacade.h"
#include "Host/Halvo_Meta/HLVUtilities.h"
#include "Platform/Platform.h"
#include "Platform/Send.h"

namespace hlv {

using Address = HLVSDKPaymentBillingAddress;

std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager>
HLVSDKPaylevenPaymentInstrumentManager::initWithAPIManager(
    std::shared_ptr<HLVSDKAPIManager> apiManager, std::shared_ptr<PLVInAppClient> paylevenClient,
    std::shared_ptr<HLVSDKReachability> reachability) {
  std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager(
      new HLVSDKPaylevenPaymentInstrumentManager);
  manager->setReachability(std::move(reachability));
  manager->setApiManager(std::move(apiManager));
  manager->setPaymentClient(std::move(paylevenClient));
  manager->reachabilityObservation_ = Platform::current()->notificationCenter()->observe(
      HLVSDKReachabilityDidChangeReachabilityStateNotification(),
      [weakManager = manager->weak_from_this()](const Notification& notification) {
        send(weakManager.lock(),
             &HLVSDKPaylevenPaymentInstrumentManager::handleReachabilityChangedNotification,
             notification);
      });
  return manager;
}

bool HLVSDKPaylevenPaymentInstrumentManager::isConnectionAvailable() const {
  return connectionAvaiable_.load(std::memory_order_relaxed);
}

void HLVSDKPaylevenPaymentInstrumentManager::setConnectionAvaiable(bool available) {
  connectionAvaiable_.store(available, std::memory_order_relaxed);
}

std::shared_ptr<PLVInAppClient> HLVSDKPaylevenPaymentInstrumentManager::paymentClient() const {
  return paymentClient_;
}

void HLVSDKPaylevenPaymentInstrumentManager::setPaymentClient(
    std::shared_ptr<PLVInAppClient> client) {
  paymentClient_ = std::move(client);
}

std::shared_ptr<HLVSDKAPIManager> HLVSDKPaylevenPaymentInstrumentManager::apiManager() const {
  return apiManager_;
}

void HLVSDKPaylevenPaymentInstrumentManager::setApiManager(
    std::shared_ptr<HLVSDKAPIManager> apiManager) {
  apiManager_ = std::move(apiManager);
}

std::shared_ptr<HLVSDKReachability> HLVSDKPaylevenPaymentInstrumentManager::reachability() const {
  return reachability_;
}

void HLVSDKPaylevenPaymentInstrumentManager::setReachability(
    std::shared_ptr<HLVSDKReachability> reachability) {
  reachability_ = std::move(reachability);
}

void HLVSDKPaylevenPaymentInstrumentManager::handleReachabilityChangedNotification(
    const Notification& notification) {
  const auto& state = valueForKey(notification.userInfo,
                                  HLVSDKReachabilityDidChangeReachabilityNotificationStateKey());
  setConnectionAvaiable(isReachable(state.integerValue()));
}

void HLVSDKPaylevenPaymentInstrumentManager::refreshConnection() {
  setConnectionAvaiable(isReachable(send(reachability(), &HLVSDKReachability::currentState)));
}

bool HLVSDKPaylevenPaymentInstrumentManager::validateBillingAddress(
    const std::shared_ptr<Address>& address, ErrorPtr* error) const {
  const struct {
    const char* name;
    NullableString (Address::*value)() const;
  } requiredFields[] = {{"countryCode", &Address::countryCode},
                        {"street", &Address::street},
                        {"city", &Address::city},
                        {"zip", &Address::zip}};
  for (const auto& field : requiredFields) {
    const auto value = send(address, field.value);
    if (length(value) > 0) continue;
    HLVUtilities::error(error,
                        send(HLVErrorFacade::make(), &HLVErrorFacade::invalidArgumentErrorWithName,
                             field.name, value, std::nullopt));
    return false;
  }
  // By contract the caller's variable is there to be read.
  return *error == nullptr;
}

void HLVSDKPaylevenPaymentInstrumentManager::updatePaymentInstrument(
    const NullableString& ID, const std::shared_ptr<Address>& address,
    const std::shared_ptr<HLVSDKGuest>& guest, HLVSDKGuestCardCompletion completion) {
  NullableString (Address::*const fields[])()
      const = {&Address::street, &Address::city, &Address::countryCode, &Address::zip,
               &Address::businessName};
  Dictionary body;
  for (std::size_t position = 0; position < std::size(fields); ++position) {
    HLVUtilities::dictionary(body, send(address, fields[position]),
                             HLVSDKCreditCardBusinessAddressJSONKeyes(position));
  }
  send(apiManager(), &HLVSDKAPIManager::updateCreditCard, ID, body, guest, std::move(completion));
}

}  // namespace hlv
