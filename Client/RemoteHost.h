// A host whose backend and provider are in other processes.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "Client/ClientError.h"
#include "Client/RemoteTester.h"
#include "Host/Host.h"
#include "Sandbox/Sandbox.h"

namespace hlv::client {

struct RemoteOptions {
  /// "http://HOST:PORT/PATH"; port and path may be left out.
  std::string backendURL;
  std::string providerURL;
  /// For one request, from its beginning to the end of its reply.
  std::chrono::milliseconds timeout{15'000};
};

/// What is no service stays with a sandbox on this side: who is signed in, this side's network,
/// loggers, assertions and the journal. Guests return what the backend last sent about them.
///
/// Completions are called on one thread of this host's own, which starts with the first call. Calls
/// that have not ended when the host goes are freed, and their completions are not called.
///
/// Threading: any. The members that ask a service and return its reply wait for it.
class RemoteHost final : public Host {
 public:
  /// Sends nothing yet. Throws `ClientError` when a URL cannot be read.
  [[nodiscard]] static std::shared_ptr<RemoteHost> open(std::shared_ptr<sandbox::Sandbox> local,
                                                        const RemoteOptions& options);
  ~RemoteHost() override;

  // What an app does, at the backend. On this side the guest is signed in afterwards with
  // `sandbox::Sandbox::signIn`, and out with `signOut`.

  /// The session that it brings is sent with every later request to the backend, by other processes
  /// on the same local store too, until the next one or `signOut`.
  [[nodiscard]] ErrorPtr signIn(const std::string& email);
  /// Ends the session, if there is one; on this side even when the backend cannot be reached.
  [[nodiscard]] ErrorPtr signOut();
  /// Fetches what the backend stores of the guest who is signed in on this side, if anyone is.
  [[nodiscard]] ErrorPtr refresh();
  /// Whether no reply is still to come.
  bool isQuiet() const;

  /// What a tester does to the services, for the guest who is signed in on this side.
  std::shared_ptr<RemoteTester> tester() const;

  /// The two sides of the guest, as the services have them; no call of theirs, so no fault meets
  /// it.
  struct Sides {
    std::vector<sandbox::BackendCard> backend;
    std::vector<sandbox::ProviderInstrument> provider;
    /// Why the rest is not known.
    ErrorPtr error;
  };
  Sides sides();

  std::shared_ptr<HLVSDKAPIManager> apiManager() override;
  std::shared_ptr<HLVSDKGuest> currentGuest() override;
  std::shared_ptr<PLVInAppClient> inAppClient() override;

  // Of this side.

  std::shared_ptr<const HLVSDKConstants> constants() override { return local_->constants(); }
  std::shared_ptr<HLVSDKReachability> reachability() override { return local_->reachability(); }
  std::shared_ptr<HLVSDKLogger> remoteLogger() override { return local_->remoteLogger(); }
  std::shared_ptr<HLVSDKLogger> consoleLogger() override { return local_->consoleLogger(); }
  std::shared_ptr<HLVSession> activeSession() override { return local_->activeSession(); }
  std::shared_ptr<HLVErrorFacade> makeErrorFacade() override { return local_->makeErrorFacade(); }
  NullableString cardBrandFromNumber(const NullableString& number) override {
    return local_->cardBrandFromNumber(number);
  }
  std::shared_ptr<HLVSDKUpdateGuestRequestInfo> makeUpdateGuestRequestInfo() override {
    return local_->makeUpdateGuestRequestInfo();
  }
  void handleAssertWithMessage(const NullableString& message) override {
    local_->handleAssertWithMessage(message);
  }
  void handleParameterAssert(const NullableString& parameter,
                             const NullableString& message) override {
    local_->handleParameterAssert(parameter, message);
  }
  std::shared_ptr<HLVSDKAddCreditCardRequestInfo::Body> makeAddCreditCardRequestBody(
      const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
      const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) override {
    return local_->makeAddCreditCardRequestBody(instrument, address);
  }
  std::shared_ptr<PLVCreditCardPaymentInstrument> makeCreditCardPaymentInstrument(
      const NullableString& pan, const NullableString& month, const NullableString& year,
      const NullableString& cvv, const NullableString& holder) override {
    return local_->makeCreditCardPaymentInstrument(pan, month, year, cvv, holder);
  }

 private:
  struct Parts;
  explicit RemoteHost(std::unique_ptr<Parts> parts);

  ErrorPtr learnFrom(const std::string& method, const std::string& email);

  const std::unique_ptr<Parts> parts_;
  const std::shared_ptr<Host> local_;
};

}  // namespace hlv::client
