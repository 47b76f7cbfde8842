// A host whose backend and provider are in other processes.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "Client/ClientError.h"
#include "Sandbox/Host/DeviceHost.h"
#include "Sandbox/Sandbox.h"
#include "Sandbox/Testing/Tester.h"

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
class RemoteHost final : public sandbox::DeviceHost {
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

  /// What a tester does to the services, for the guest who is signed in on this side. What returns
  /// no `Result` throws `ClientError`.
  std::shared_ptr<sandbox::Tester> tester() const;

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

 private:
  struct Services;
  explicit RemoteHost(std::unique_ptr<Services> services);

  ErrorPtr learnFrom(const std::string& method, const std::string& email);

  const std::unique_ptr<Services> services_;
};

}  // namespace hlv::client
