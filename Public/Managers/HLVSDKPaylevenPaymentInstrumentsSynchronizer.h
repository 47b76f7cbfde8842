// Removes from the provider whatever the backend does not know. The backend is the authority;
// nothing is ever added or changed.
//
// Threading: operations may be called from any thread; the final step of a synchronisation runs on
// the synchroniser's own serial queue, and completions come on the main thread. Set the properties
// before the first synchronisation.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrumentsSynchronizer.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Models/HLVSDKPLVPaymentInstrument.h"
#include "Platform/Queue.h"
#include "Values/Export.h"

namespace hlv {

/// (pairs of instrument and use case, error). The list is missing when there is an error.
using HLVSDKPLVPaymentInstrumentsCompletion =
    std::function<void(NullableList<HLVSDKPLVPaymentInstrument>, ErrorPtr)>;

/// Runs one synchronisation at a time. Any argument may be null; an empty completion is skipped.
class HLV_EXPORT HLVSDKPaylevenPaymentInstrumentsSynchronizer
    : public HLVSDKPaymentInstrumentsSynchronizer,
      public std::enable_shared_from_this<HLVSDKPaylevenPaymentInstrumentsSynchronizer> {
 public:
  /// `-initWithAPIManager:paylevenClient:`. Creates the serial queue. A null service never replies.
  [[nodiscard]] static std::shared_ptr<HLVSDKPaylevenPaymentInstrumentsSynchronizer>
  initWithAPIManager(std::shared_ptr<HLVSDKAPIManager> apiManager,
                     std::shared_ptr<PLVInAppClient> paylevenClient);

  /// `-apiManager`, `-setApiManager:`
  std::shared_ptr<HLVSDKAPIManager> apiManager() const;
  void setApiManager(std::shared_ptr<HLVSDKAPIManager> apiManager);
  /// `-paylevenClient`, `-setPaylevenClient:`
  std::shared_ptr<PLVInAppClient> paylevenClient() const;
  void setPaylevenClient(std::shared_ptr<PLVInAppClient> client);
  /// `-synchronizationQueue`, `-setSynchronizationQueue:`. A missing queue is replaced when a
  /// synchronisation starts.
  std::shared_ptr<Queue> synchronizationQueue() const;
  void setSynchronizationQueue(std::shared_ptr<Queue> queue);
  /// `-isSynchronizing`, `-setSynchronizing:`. While it is set, requests are dropped. Any thread.
  ///
  /// Kept for compatibility: only a synchronisation that found instruments clears it; one that
  /// failed or found none leaves it set, and whoever wants another must clear it here.
  virtual bool isSynchronizing() const;
  virtual void setSynchronizing(bool synchronizing);

  /// `-synchronizePaymentInstrumentsForGuest:`. As below, without a report.
  void synchronizePaymentInstrumentsForGuest(const std::shared_ptr<HLVSDKGuest>& guest) override;

  /// `-synchronizePaymentInstrumentsForGuest:completion:`. Fetches the guest's cards and the
  /// provider's instruments, and asks the provider to remove every instrument without a card.
  /// Reports success once the removals are requested; how they come out is only logged. Errors: the
  /// backend's own, and the wrapped one of the provider; the one that came last. The guest and its
  /// token are required, but a request without them is only asserted, and never completes; neither
  /// does a request that is dropped.
  void synchronizePaymentInstrumentsForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                                             HLVSDKSuccessCompletion completion) override;

  /// `-isCreditCardExistsInArray:relatedToPaymentInstrument:`. Whether a card stands for the
  /// instrument: by its external identifier, or, only where it has none, by last four digits, brand
  /// and use case. Any thread.
  ///
  /// A synchronisation asks this once for each instrument, after it has requested the removals of
  /// the instruments before it; so an override decides, and a card that changes meanwhile counts as
  /// it is then.
  [[nodiscard]] virtual bool isCreditCardExistsInArray(
      const NullableList<HLVSDKCreditCard>& cards,
      const std::shared_ptr<HLVSDKPLVPaymentInstrument>& paymentInstrument) const;

  /// `-fetchAllPaylevenPaymentInstrumentsForGuest:completion:`. Lists the private, business and
  /// default instruments at the same time. Reports the pairs in the order of the replies, or the
  /// last wrapped provider error; on the main thread.
  virtual void fetchAllPaylevenPaymentInstrumentsForGuest(
      const std::shared_ptr<HLVSDKGuest>& guest, HLVSDKPLVPaymentInstrumentsCompletion completion);

 protected:
  /// What `initWithAPIManager` does. A subclass too is held by a shared pointer.
  HLVSDKPaylevenPaymentInstrumentsSynchronizer(std::shared_ptr<HLVSDKAPIManager> apiManager,
                                               std::shared_ptr<PLVInAppClient> paylevenClient);

 private:
  struct Run;

  void finish(const Run& run);
  void removeOrphans(const Run& run);

  std::shared_ptr<HLVSDKAPIManager> apiManager_;
  std::shared_ptr<PLVInAppClient> paylevenClient_;
  std::shared_ptr<Queue> synchronizationQueue_;
  // Where the next search for a card begins.
  mutable std::atomic<std::size_t> likelyCard_{0};
  // Read and set on the caller's thread, cleared on the queue.
  std::atomic<bool> synchronizing_{false};
};

}  // namespace hlv
