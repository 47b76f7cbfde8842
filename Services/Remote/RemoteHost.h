// A host whose backend and provider are in other processes.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "Host/Host.h"
#include "Sandbox/Sandbox.h"
#include "Sandbox/Tester.h"

namespace hlv::services {

struct RemoteOptions {
  /// "http://HOST:PORT"
  std::string backendURL;
  std::string providerURL;
  /// For one request, from its beginning to the end of its answer.
  std::chrono::milliseconds patience{15'000};
};

/// What is no service stays with a sandbox on this side: who is signed in, this side's network,
/// loggers, assertions and the journal. Guests answer what the backend last told of them.
///
/// Threading: any. The members that ask a service and return its answer wait for it.
class RemoteHost final : public Host {
 public:
  struct Opened {
    /// Null when a URL cannot be read.
    std::shared_ptr<RemoteHost> host;
    /// One plain sentence when it cannot.
    std::string problem;
  };

  /// Speaks to nobody yet.
  static Opened open(std::shared_ptr<sandbox::Sandbox> local, const RemoteOptions& options);
  ~RemoteHost() override;

  // What an app does, at the backend. The guest is signed in on this side with
  // `sandbox::Sandbox::signIn`, afterwards.

  ErrorPtr signIn(const std::string& email);
  /// Learns what the backend knows of the guest who is signed in on this side, if anyone is.
  ErrorPtr refresh();
  /// Whether no answer is still to come.
  bool isQuiet() const;

  /// What a tester does to the services.
  std::shared_ptr<sandbox::Tester> tester() const;

  /// The two sides of the guest, as the services have them; no call of theirs, so no fault meets
  /// it.
  struct Sides {
    std::vector<sandbox::BackendCard> backend;
    std::vector<sandbox::ProviderInstrument> provider;
    /// What kept the rest from being told.
    ErrorPtr error;
  };
  Sides sides();

  std::shared_ptr<const HLVSDKConstants> constants() override;
  std::shared_ptr<HLVSDKAPIManager> apiManager() override;
  std::shared_ptr<HLVSDKReachability> reachability() override;
  std::shared_ptr<HLVSDKGuest> currentGuest() override;
  NullableString cardBrandFromNumber(const NullableString& number) override;
  std::shared_ptr<HLVSDKUpdateGuestRequestInfo> makeUpdateGuestRequestInfo() override;
  void handleAssertWithMessage(const NullableString& message) override;
  void handleParameterAssert(const NullableString& parameter,
                             const NullableString& message) override;
  std::shared_ptr<HLVSDKLogger> remoteLogger() override;
  std::shared_ptr<HLVSDKLogger> consoleLogger() override;
  std::shared_ptr<HLVSDKAddCreditCardRequestInfo::Body> makeAddCreditCardRequestBody(
      const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
      const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) override;
  std::shared_ptr<HLVSession> activeSession() override;
  std::shared_ptr<HLVErrorFacade> makeErrorFacade() override;
  std::shared_ptr<PLVInAppClient> inAppClient() override;
  std::shared_ptr<PLVCreditCardPaymentInstrument> makeCreditCardPaymentInstrument(
      const NullableString& pan, const NullableString& expiryMonth,
      const NullableString& expiryYear, const NullableString& cvv,
      const NullableString& cardHolder) override;

 private:
  struct Parts;
  explicit RemoteHost(std::unique_ptr<Parts> parts);

  ErrorPtr learnFrom(const std::string& method, const std::string& email);

  const std::unique_ptr<Parts> parts_;
};

}  // namespace hlv::services
