// An app that embeds the kit, as the command and the console play it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKCompletions.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentBillingAddress.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrument.h"
#include "Host/Host.h"
#include "Platform/NotificationCenter.h"
#include "Sandbox/Sandbox.h"
#include "Values/Mutex.h"

namespace hlv::sandbox {

/// One call of the kit, and what it has brought so far: a completion comes on any thread, late,
/// several times or never.
///
/// Threading: any.
class AppCall {
 public:
  struct Outcome {
    int completions = 0;
    /// What the last one brought.
    std::shared_ptr<HLVSDKGuest> guest = {};
    std::shared_ptr<HLVSDKCreditCard> card = {};
    ErrorPtr error = {};
  };
  Outcome outcome() const;
  void complete(const std::shared_ptr<HLVSDKGuest>& guest,
                const std::shared_ptr<HLVSDKCreditCard>& card, const ErrorPtr& error);

 private:
  mutable Mutex mutex_;
  Outcome outcome_ HLV_GUARDED_BY(mutex_);
};

/// Installs its host for the process, so there is one at a time. The kit keeps its guest, and a
/// synchroniser that failed for one guest stays busy for the next; so the app sets the kit's guest
/// whenever another one has signed in or out.
///
/// Threading: the main thread.
class SimulatedApp {
 public:
  /// `sandbox` keeps who is signed in and the timeline; `host` is its own or one that uses services
  /// elsewhere, and `areServicesQuiet` says whether none of these has a reply to come.
  SimulatedApp(std::shared_ptr<Sandbox> sandbox, std::shared_ptr<Host> host,
               std::function<bool()> areServicesQuiet);
  /// Lets go of kit and host, so that none of their threads works while the process exits.
  ~SimulatedApp();
  SimulatedApp(const SimulatedApp&) = delete;
  SimulatedApp& operator=(const SimulatedApp&) = delete;

  static bool kitIsEnabled();

  // The kit's operations on cards. Every argument may be null. The timeline records what the app
  // asks and each completion.

  std::shared_ptr<const AppCall> add(const std::shared_ptr<HLVSDKPaymentInstrument>& card,
                                     const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                                     const std::shared_ptr<HLVSDKGuest>& guest) const;
  std::shared_ptr<const AppCall> update(const NullableString& ID,
                                        const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                                        const std::shared_ptr<HLVSDKGuest>& guest) const;
  std::shared_ptr<const AppCall> remove(const NullableString& ID, const NullableString& useCase,
                                        const std::shared_ptr<HLVSDKGuest>& guest) const;

  /// Whether every reply has come and nothing more can happen.
  bool isSettled() const;

 private:
  /// A call, and the completion that belongs to it.
  std::pair<std::shared_ptr<const AppCall>, HLVSDKGuestCardCompletion> begin(
      const std::string& what) const;

  const std::shared_ptr<Sandbox> sandbox_;
  const std::function<bool()> areServicesQuiet_;
  const std::unique_ptr<Observation> followsGuest_;
};

/// How an app enables the kit: as it should, or as it might get it wrong.
enum class Enabling { normal, noEntry, wrongClass, noKey, none };

/// Threading: the main thread.
void enableKit(Enabling enabling);

}  // namespace hlv::sandbox
