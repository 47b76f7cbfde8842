// Adds, updates and deletes a guest's cards at the payment provider and the host backend.
//
// Threading: operations may be called from any thread and run there until they hand over to the
// backend or the provider. Completions come on the main thread, except that of an update, which is
// the backend client's to call. Set the properties before the first operation.
//
// One source file holds each operation: this class's own (core and update), and those with +Add
// (dispatch), +AddFirst (first card), +AddNew (further card), +Confirm and +Delete.
#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentBillingAddress.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrument.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrumentManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Host/PaylevenFramework/PLVPaymentInstrument.h"
#include "Platform/NotificationCenter.h"
#include "Values/Export.h"

namespace hlv {

/// (provider user token, provider instrument, error); each may be missing.
using HLVSDKPaylevenInstrumentCompletion =
    std::function<void(NullableString, std::shared_ptr<PLVCreditCardPaymentInstrument>, ErrorPtr)>;

/// Every argument of every operation may be null; which are required is said there. A null
/// completion is skipped and everything else still happens. Each operation reports at most once;
/// when a service never replies, or the manager goes away at the moments named below, it never
/// does. An exception that a service or a completion throws passes through to whoever called.
class HLV_EXPORT HLVSDKPaylevenPaymentInstrumentManager
    : public HLVSDKPaymentInstrumentManager,
      public std::enable_shared_from_this<HLVSDKPaylevenPaymentInstrumentManager> {
 public:
  /// `-initWithAPIManager:paylevenClient:reachability:`. Begins to observe reachability; the
  /// connectivity flag stays false until it is first set. A null service never replies.
  [[nodiscard]] static std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> initWithAPIManager(
      std::shared_ptr<HLVSDKAPIManager> apiManager, std::shared_ptr<PLVInAppClient> paylevenClient,
      std::shared_ptr<HLVSDKReachability> reachability);

  /// `-isConnectionAvailable`, `-setConnectionAvaiable:`. Whether the network was last seen
  /// reachable. Any thread.
  virtual bool isConnectionAvailable() const;
  virtual void setConnectionAvaiable(bool available);
  /// `-paymentClient`, `-setPaymentClient:`
  std::shared_ptr<PLVInAppClient> paymentClient() const;
  void setPaymentClient(std::shared_ptr<PLVInAppClient> client);
  /// `-apiManager`, `-setApiManager:`
  std::shared_ptr<HLVSDKAPIManager> apiManager() const;
  void setApiManager(std::shared_ptr<HLVSDKAPIManager> apiManager);
  /// `-reachability`, `-setReachability:`
  std::shared_ptr<HLVSDKReachability> reachability() const;
  void setReachability(std::shared_ptr<HLVSDKReachability> reachability);

  /// `-handleReachabilityChangedNotification:`. Takes the connectivity flag from the notification.
  void handleReachabilityChangedNotification(const Notification& notification);

  /// `-validateBillingAddress:error:`. Whether country code, street, city and zip are all there;
  /// the first that is not is reported as an invalid argument. `error` must not be null. With a
  /// complete address the result is false when `*error` already holds an error, which is left
  /// alone.
  [[nodiscard]] bool validateBillingAddress(
      const std::shared_ptr<HLVSDKPaymentBillingAddress>& address, ErrorPtr* error) const;

  /// `-addPaymentInstrument:billingAddress:forGuest:completion:`. Adds a card as the user typed it.
  /// Reports the card's own error when it is not valid, `HLVURLErrorDomain` code 1 without a
  /// connection, and otherwise what `addFirstPaymentInstrument` or `addNewPaymentInstrument`
  /// reports, for a guest without or with a provider user token. The address is not validated.
  void addPaymentInstrument(const std::shared_ptr<HLVSDKPaymentInstrument>& card,
                            const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                            const std::shared_ptr<HLVSDKGuest>& guest,
                            HLVSDKGuestCardCompletion completion) override;

  /// `-addFirstPaymentInstrument:billingAddress:forGuest:completion:`. Creates the provider user
  /// token with the card, confirms the card, and then stores the token on the guest and registers
  /// the card, both at once. Reports the guest that was passed in and the backend's card; a card
  /// and an error may come together. Errors: the wrapped provider error, those of
  /// `processAddedPaymentInstrument`, the required arguments "userToken" and "identifier", and the
  /// first error of the backend.
  ///
  /// When the manager goes away before the provider has created the token, a token never completes,
  /// while an error and a missing token are reported. When it goes away before the card is
  /// confirmed, a confirmed card is marked and never completes, while an error and a card that
  /// nothing matches are reported. Once the requests to the backend have left, it completes.
  virtual void addFirstPaymentInstrument(
      const std::shared_ptr<HLVSDKPaymentInstrument>& card,
      const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
      const std::shared_ptr<HLVSDKGuest>& guest, HLVSDKGuestCardCompletion completion);

  /// `-addFirstPaymentInstrumentToPayleven:forGuestEmail:completion:`. The provider's half of
  /// `addFirstPaymentInstrument`.
  virtual void addFirstPaymentInstrumentToPayleven(
      const std::shared_ptr<HLVSDKPaymentInstrument>& card, const NullableString& email,
      HLVSDKPaylevenInstrumentCompletion completion);

  /// `-addNewPaymentInstrument:billingAddress:forGuest:completion:`. Adds the card under the
  /// guest's token, confirms it and registers it. Reports the backend's guest and card. Errors: the
  /// wrapped provider error, those of `processAddedPaymentInstrument` and the required argument
  /// "identifier". Kept for compatibility: a registration that the backend refuses reports no
  /// error, usually without guest and card; so a missing card means that the card was not added.
  ///
  /// When the manager goes away before the provider has stored the card, a success never completes,
  /// while an error is reported. When it goes away before the card is confirmed, a confirmed card
  /// is marked and never completes, while an error and a card that nothing matches are reported.
  /// Once the request to the backend has left, it completes.
  virtual void addNewPaymentInstrument(const std::shared_ptr<HLVSDKPaymentInstrument>& card,
                                       const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                                       const std::shared_ptr<HLVSDKGuest>& guest,
                                       HLVSDKGuestCardCompletion completion);

  /// `-addNewPaymentInstrumentToPayleven:withPaylevenToken:completion:`. The provider's half of
  /// `addNewPaymentInstrument`.
  virtual void addNewPaymentInstrumentToPayleven(
      const std::shared_ptr<HLVSDKPaymentInstrument>& card, const NullableString& token,
      HLVSDKPaylevenInstrumentCompletion completion);

  /// `-processAddedPaymentInstrument:paylevenToken:completion:`. Finds the instrument that the
  /// provider has just stored for a card. Card and token are required. Reports the token and the
  /// instrument, or no instrument when none matches, which is no error here. Errors: the required
  /// arguments "paymentInstrument" and "paylevenToken", the wrapped provider error, and
  /// `HLVPaymentErrorDomain` code 5 for an instrument that cannot be used. Goes on without the
  /// manager.
  virtual void processAddedPaymentInstrument(const std::shared_ptr<HLVSDKPaymentInstrument>& card,
                                             const NullableString& paylevenToken,
                                             HLVSDKPaylevenInstrumentCompletion completion);

  /// `-deletePaymentInstrumentWithID:useCase:fromGuest:completion:`. Deletes a card at the backend
  /// and then its instrument at the provider. Required: a guest with a provider user token, the
  /// card's identifier at the backend, its use case, and that the guest has the card. Reports the
  /// guest as the backend returned it; guest and error come together when only the provider failed.
  /// Errors: the required arguments "paymentToken", "halvoID", "useCase" and "existedCard",
  /// `HLVURLErrorDomain` code 1 without a connection, the backend's own error, and the wrapped
  /// error of the removal. When the manager goes away before the backend replies, an error is still
  /// reported and a success never is.
  void deletePaymentInstrumentWithID(const NullableString& ID, const NullableString& useCase,
                                     const std::shared_ptr<HLVSDKGuest>& guest,
                                     HLVSDKGuestCompletion completion) override;

  /// `-updatePaymentInstrument:billingAddress:forGuest:completion:`. Sends a card's billing address
  /// to the backend; missing fields are left out. The backend client calls `completion` itself, on
  /// a thread of its choice.
  void updatePaymentInstrument(const NullableString& ID,
                               const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                               const std::shared_ptr<HLVSDKGuest>& guest,
                               HLVSDKGuestCardCompletion completion) override;

 protected:
  // For a director, which sends the virtual members to an object of another model. That object
  // calls those of this class by their qualified names, and does by itself what the initialiser
  // does.
  HLVSDKPaylevenPaymentInstrumentManager() = default;

 private:
  void refreshConnection();
  /// Reports the token that there is and the wrapped error; wraps it at delivery time.
  static void deliverProviderError(HLVSDKPaylevenInstrumentCompletion completion,
                                   const NullableString& token, const ErrorPtr& error);

  std::shared_ptr<HLVSDKReachability> reachability_;
  std::shared_ptr<HLVSDKAPIManager> apiManager_;
  std::shared_ptr<PLVInAppClient> paymentClient_;
  // Written from several threads; the last writer wins.
  std::atomic<bool> connectionAvaiable_{false};
  std::unique_ptr<Observation> reachabilityObservation_;
};

}  // namespace hlv
