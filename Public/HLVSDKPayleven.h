// The kit's facade: the class by which the host SDK knows the kit.
//
// Threading: any. The notification handlers run on the thread that posts.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKConfiguration.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Host/HLVSDKCoreKit/HLVSDKKit.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrumentManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrumentsSynchronizer.h"
#include "Platform/NotificationCenter.h"
#include "Platform/SharedSlot.h"
#include "Public/HLVSDKPaylevenKitConfiguration.h"
#include "Values/Export.h"

namespace hlv {

/// Enabled once and alive for the rest of the process. Owns the manager and the synchroniser, and
/// synchronises the guest's instruments when the app returns to the foreground, when the guest
/// becomes authorised and when the network becomes reachable.
class HLV_EXPORT HLVSDKPayleven : public HLVSDKKit,
                                  public std::enable_shared_from_this<HLVSDKPayleven> {
 public:
  /// `+class`. What stands as `kit` in the host configuration's entry for this kit.
  static HLVSDKKitClass kitClass();

  /// `+enableWithConfiguration:`. Takes the last entry of `receiver`, which is this class unless a
  /// subclass names its own, and creates the shared instance from it. A missing entry, a
  /// configuration of another kind and a missing payment key are each reported to the assertion
  /// handler, and nothing is created then. Once the shared instance exists, further calls change
  /// nothing. `configuration` may be null. Without an installed host nothing is created, and a
  /// line on standard error says so. After that, and after an exception of the host, which passes
  /// through, enabling can be repeated.
  static void enableWithConfiguration(const std::shared_ptr<HLVSDKConfiguration>& configuration,
                                      HLVSDKKitClass receiver = kitClass());

  /// `+sharedInstance`. Null before the kit is enabled.
  static std::shared_ptr<HLVSDKPayleven> sharedInstance();

  /// `+sharedInstanceWithConfiguration:paylevenKitConfiguration:`. The first call of the process
  /// creates the shared instance; later arguments are ignored.
  static std::shared_ptr<HLVSDKPayleven> sharedInstanceWithConfiguration(
      const std::shared_ptr<HLVSDKConfiguration>& configuration,
      const std::shared_ptr<HLVSDKPaylevenKitConfiguration>& kitConfiguration);

  /// `-initWithConfiguration:paylevenKitConfiguration:`. Reads the current guest, once and for all,
  /// registers the payment key with the provider, creates the manager and the synchroniser, and
  /// observes the three notifications. Starts no synchronisation.
  [[nodiscard]] static std::shared_ptr<HLVSDKPayleven> initWithConfiguration(
      std::shared_ptr<HLVSDKConfiguration> configuration,
      std::shared_ptr<HLVSDKPaylevenKitConfiguration> kitConfiguration);

  /// `-paymentInstrumentsSynchronizer`, `-setPaymentInstrumentsSynchronizer:`
  std::shared_ptr<HLVSDKPaymentInstrumentsSynchronizer> paymentInstrumentsSynchronizer() const;
  void setPaymentInstrumentsSynchronizer(
      std::shared_ptr<HLVSDKPaymentInstrumentsSynchronizer> synchronizer);
  /// `-paymentInstrumentManager`, `-setPaymentInstrumentManager:`
  std::shared_ptr<HLVSDKPaymentInstrumentManager> paymentInstrumentManager() const;
  void setPaymentInstrumentManager(std::shared_ptr<HLVSDKPaymentInstrumentManager> manager);
  /// `-configuration`, `-setConfiguration:`
  std::shared_ptr<HLVSDKConfiguration> configuration() const;
  void setConfiguration(std::shared_ptr<HLVSDKConfiguration> configuration);
  /// `-kitConfiguration`, `-setKitConfiguration:`
  std::shared_ptr<HLVSDKPaylevenKitConfiguration> kitConfiguration() const;
  void setKitConfiguration(std::shared_ptr<HLVSDKPaylevenKitConfiguration> configuration);
  /// `-currentGuest`, `-setCurrentGuest:`. The guest whose instruments are synchronised. The kit
  /// never reads the host's guest again, so an app sets the next one here when another guest signs
  /// in, and then calls `setUpPaymentInstrumentsSynchronizer`: the synchroniser of the guest before
  /// may be at work, or busy for ever after a failure. docs/host.md says when.
  std::shared_ptr<HLVSDKGuest> currentGuest() const;
  void setCurrentGuest(std::shared_ptr<HLVSDKGuest> guest);

  /// `-setUpPaymentManager`. Registers the payment key and creates the manager.
  void setUpPaymentManager();
  /// `-setUpPaymentInstrumentsSynchronizer`. Creates a synchroniser, which is ready for its first
  /// synchronisation.
  void setUpPaymentInstrumentsSynchronizer();

  /// `-start`. Does nothing; enabling has done it all.
  void start() override {}

  /// `-synchronizePaymentInstruments`. Does nothing for a guest without a provider user token.
  virtual void synchronizePaymentInstruments();

  /// `-handleUIApplicationWillEnterForegroundNotification:`. Synchronises when the session is
  /// authorised.
  void handleUIApplicationWillEnterForegroundNotification(const Notification& notification);
  /// `-handleAuthorizationDidChangeNotification:`. Synchronises when the notification says that the
  /// guest is authorised.
  void handleAuthorizationDidChangeNotification(const Notification& notification);
  /// `-handleReachabilityChangedNotification:`. Synchronises when the session is authorised and the
  /// network turned reachable from another state.
  void handleReachabilityChangedNotification(const Notification& notification);

  /// For tests, on one thread: `+resetSharedInstance` lets the shared instance go, and the next
  /// enabling creates another; `+setSharedInstance:` replaces it, null included.
  static void resetSharedInstance();
  static void setSharedInstance(std::shared_ptr<HLVSDKPayleven> instance);

 protected:
  // For a director, as in the manager.
  HLVSDKPayleven() = default;

 private:
  using Handler = void (HLVSDKPayleven::*)(const Notification&);
  std::unique_ptr<Observation> observe(const NullableString& name, Handler handler);

  SharedSlot<HLVSDKPaymentInstrumentsSynchronizer> paymentInstrumentsSynchronizer_;
  SharedSlot<HLVSDKPaymentInstrumentManager> paymentInstrumentManager_;
  SharedSlot<HLVSDKConfiguration> configuration_;
  SharedSlot<HLVSDKPaylevenKitConfiguration> kitConfiguration_;
  SharedSlot<HLVSDKGuest> currentGuest_;
  std::unique_ptr<Observation> foregroundObservation_;
  std::unique_ptr<Observation> authorizationObservation_;
  std::unique_ptr<Observation> reachabilityObservation_;
};

}  // namespace hlv
