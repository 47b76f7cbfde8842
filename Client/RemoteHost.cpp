#include "Client/RemoteHost.h"

#include <utility>

#include "Client/RemoteService.h"
#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/JSON/InstrumentRecords.h"

namespace hlv::client {
namespace {

ServiceURL readURL(const std::string& text) {
  if (auto url = ServiceURL::read(text)) return *url;
  throw ClientError(
      "A service's URL reads http://HOST:PORT, with or without a path; both are needed.");
}

/// Whoever has no session any more is signed out.
bool saysNotSignedIn(const ErrorPtr& error) {
  return error->domain() == sandbox::backendErrorDomain &&
         error->code() == static_cast<std::int64_t>(sandbox::BackendErrorCode::notSignedIn);
}

ClientRequest endOf(const NullableString& session) {
  return {.method = "DELETE", .target = "/v1/session", .session = session};
}

}  // namespace

struct RemoteHost::Services {
  Services(std::shared_ptr<sandbox::Sandbox> localSandbox, const RemoteOptions& options)
      : local(std::move(localSandbox)),
        backendClient(readURL(options.backendURL), options.timeout, loop),
        providerClient(readURL(options.providerURL), options.timeout, loop),
        session(std::make_shared<RemoteSession>(local, options.backendURL)),
        backend(remoteBackend({"backend", backendClient, local}, local, session, guests)),
        provider(remoteProvider({"provider", providerClient, local})) {}

  const std::shared_ptr<sandbox::Sandbox> local;
  const std::shared_ptr<HttpLoop> loop = std::make_shared<HttpLoop>();
  const HttpClient backendClient;
  const HttpClient providerClient;
  const std::shared_ptr<RemoteSession> session;
  const std::shared_ptr<RemoteGuests> guests = std::make_shared<RemoteGuests>();
  const std::shared_ptr<HLVSDKAPIManager> backend;
  const std::shared_ptr<PLVInAppClient> provider;
};

std::shared_ptr<RemoteHost> RemoteHost::open(std::shared_ptr<sandbox::Sandbox> local,
                                             const RemoteOptions& options) {
  return std::shared_ptr<RemoteHost>(
      new RemoteHost(std::make_unique<Services>(std::move(local), options)));
}

RemoteHost::RemoteHost(std::unique_ptr<Services> services)
    : DeviceHost(services->local->parts()), services_(std::move(services)) {}

RemoteHost::~RemoteHost() = default;

ErrorPtr RemoteHost::learnFrom(const std::string& method, const std::string& email) {
  const bool isSignIn = method == "PUT";
  const auto reply = services_->backendClient.send(
      {.method = method,
       .target = "/v1/guests/" + percentEncoded(email),
       .session = isSignIn ? std::nullopt : services_->session->token()});
  if (reply.error) return reply.error;
  try {
    services_->guests->learn(sandbox::guestIn(reply.body));
    if (!isSignIn) return nullptr;
    const auto replaced = services_->session->exchange(sandbox::textIn(reply.body, "session"));
    // Nobody waits to learn whether it was still one.
    if (replaced) {
      services_->backendClient.send([replaced] { return endOf(replaced); },
                                    [](const ClientReply&) {});
    }
    return nullptr;
  } catch (const sandbox::InvalidRecord&) {
    return sandbox::transportError(sandbox::TransportErrorCode::unreadable);
  }
}

ErrorPtr RemoteHost::signIn(const std::string& email) {
  // There may be another backend at that place by now, whose revisions are lower.
  services_->guests->guest(email)->forgetRevision();
  return learnFrom("PUT", email);
}

ErrorPtr RemoteHost::signOut() {
  const auto session = services_->session->exchange(std::nullopt);
  if (!session) return nullptr;
  const auto reply = services_->backendClient.send(endOf(session));
  return reply.error && !saysNotSignedIn(reply.error) ? reply.error : nullptr;
}

ErrorPtr RemoteHost::refresh() {
  const auto email = services_->local->signedInEmail();
  return email ? learnFrom("GET", *email) : nullptr;
}

bool RemoteHost::isQuiet() const { return services_->loop->isIdle(); }

RemoteHost::Sides RemoteHost::sides() {
  Sides sides;
  const auto email = services_->local->signedInEmail();
  if (!email) return sides;
  sides.error = refresh();
  if (sides.error) return sides;
  const auto reply =
      services_->providerClient.send({.method = "GET",
                                      .target = "/v1/sandbox/sides?guest=" + percentEncoded(*email),
                                      .apiKey = "paylevenkit"});
  sides.error = reply.error;
  if (sides.error) return sides;
  try {
    sides.backend =
        sandbox::recordsIn(sandbox::listIn(reply.body, "credit_cards"), sandbox::cardIn);
    sides.provider =
        sandbox::recordsIn(sandbox::listIn(reply.body, "instruments"), sandbox::instrumentIn);
  } catch (const sandbox::InvalidRecord&) {
    sides = {{}, {}, sandbox::transportError(sandbox::TransportErrorCode::unreadable)};
  }
  return sides;
}

std::shared_ptr<sandbox::Tester> RemoteHost::tester() const {
  return remoteTester(services_->providerClient,
                      [local = services_->local] { return local->signedInEmail(); });
}

std::shared_ptr<HLVSDKAPIManager> RemoteHost::apiManager() { return services_->backend; }

std::shared_ptr<HLVSDKGuest> RemoteHost::currentGuest() {
  const auto email = services_->local->signedInEmail();
  return email ? services_->guests->guest(*email) : nullptr;
}

std::shared_ptr<PLVInAppClient> RemoteHost::inAppClient() { return services_->provider; }

}  // namespace hlv::client
