#include "Services/Remote/RemoteHost.h"

#include <utility>

#include "Services/BackendRecords.h"
#include "Services/Http/Percent.h"
#include "Services/Remote/CallThreads.h"
#include "Services/Remote/RemoteBackend.h"
#include "Services/Remote/RemoteProvider.h"
#include "Services/Remote/RemoteTester.h"
#include "Services/TesterRecords.h"

namespace hlv::services {

struct RemoteHost::Parts {
  Parts(std::shared_ptr<sandbox::Sandbox> localSandbox, HttpClient toBackend, HttpClient toProvider)
      : local(std::move(localSandbox)),
        localHost(local->host()),
        backendClient(std::move(toBackend)),
        providerClient(std::move(toProvider)),
        backend(std::make_shared<RemoteBackend>(
            RemoteService("backend", backendClient, local, threads), local, guests)),
        provider(std::make_shared<RemoteProvider>(
            RemoteService("provider", providerClient, local, threads))) {}

  const std::shared_ptr<sandbox::Sandbox> local;
  const std::shared_ptr<Host> localHost;
  const HttpClient backendClient;
  const HttpClient providerClient;
  const std::shared_ptr<CallThreads> threads = std::make_shared<CallThreads>();
  const std::shared_ptr<RemoteGuests> guests = std::make_shared<RemoteGuests>();
  const std::shared_ptr<RemoteBackend> backend;
  const std::shared_ptr<RemoteProvider> provider;
};

RemoteHost::Opened RemoteHost::open(std::shared_ptr<sandbox::Sandbox> local,
                                    const RemoteOptions& options) {
  const auto backend = ServiceURL::read(options.backendURL);
  const auto provider = ServiceURL::read(options.providerURL);
  if (!backend || !provider) {
    return {nullptr, "A service's URL reads http://HOST:PORT; both are needed."};
  }
  return {std::shared_ptr<RemoteHost>(new RemoteHost(
              std::make_unique<Parts>(std::move(local), HttpClient(*backend, options.patience),
                                      HttpClient(*provider, options.patience)))),
          ""};
}

RemoteHost::RemoteHost(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}

RemoteHost::~RemoteHost() = default;

ErrorPtr RemoteHost::learnFrom(const std::string& method, const std::string& email) {
  const auto answer = parts_->backendClient.send(
      {method, "/v1/guests/" + percentEncoded(email), nullptr, std::nullopt});
  if (answer.error) return answer.error;
  try {
    parts_->guests->learn(guestIn(answer.body));
    return nullptr;
  } catch (const Json::exception&) {
    return sandbox::transportError(sandbox::TransportErrorCode::unreadable);
  }
}

ErrorPtr RemoteHost::signIn(const std::string& email) {
  // There may be another backend at that place by now, whose revisions are lower.
  parts_->guests->guest(email)->forgetRevision();
  return learnFrom("PUT", email);
}

ErrorPtr RemoteHost::refresh() {
  const auto email = parts_->local->signedInEmail();
  return email ? learnFrom("GET", *email) : nullptr;
}

bool RemoteHost::isQuiet() const { return parts_->threads->isQuiet(); }

RemoteHost::Sides RemoteHost::sides() {
  Sides sides;
  if (!parts_->local->signedInEmail()) return sides;
  sides.error = refresh();
  if (sides.error) return sides;
  const auto answer =
      parts_->providerClient.send({"GET", "/v1/sandbox/sides", nullptr, "paylevenkit"});
  sides.error = answer.error;
  if (sides.error) return sides;
  try {
    for (const auto& card : answer.body.at("credit_cards")) sides.backend.push_back(cardIn(card));
    sides.provider = storedInstrumentsIn(answer.body.at("instruments"));
  } catch (const Json::exception&) {
    sides = {{}, {}, sandbox::transportError(sandbox::TransportErrorCode::unreadable)};
  }
  return sides;
}

std::shared_ptr<sandbox::Tester> RemoteHost::tester() const {
  return std::make_shared<RemoteTester>(parts_->providerClient);
}

std::shared_ptr<const HLVSDKConstants> RemoteHost::constants() {
  return parts_->localHost->constants();
}

std::shared_ptr<HLVSDKAPIManager> RemoteHost::apiManager() { return parts_->backend; }

std::shared_ptr<HLVSDKReachability> RemoteHost::reachability() {
  return parts_->localHost->reachability();
}

std::shared_ptr<HLVSDKGuest> RemoteHost::currentGuest() {
  const auto email = parts_->local->signedInEmail();
  return email ? parts_->guests->guest(*email) : nullptr;
}

NullableString RemoteHost::cardBrandFromNumber(const NullableString& number) {
  return parts_->localHost->cardBrandFromNumber(number);
}

std::shared_ptr<HLVSDKUpdateGuestRequestInfo> RemoteHost::makeUpdateGuestRequestInfo() {
  return parts_->localHost->makeUpdateGuestRequestInfo();
}

void RemoteHost::handleAssertWithMessage(const NullableString& message) {
  parts_->localHost->handleAssertWithMessage(message);
}

void RemoteHost::handleParameterAssert(const NullableString& parameter,
                                       const NullableString& message) {
  parts_->localHost->handleParameterAssert(parameter, message);
}

std::shared_ptr<HLVSDKLogger> RemoteHost::remoteLogger() {
  return parts_->localHost->remoteLogger();
}

std::shared_ptr<HLVSDKLogger> RemoteHost::consoleLogger() {
  return parts_->localHost->consoleLogger();
}

std::shared_ptr<HLVSDKAddCreditCardRequestInfo::Body> RemoteHost::makeAddCreditCardRequestBody(
    const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) {
  return parts_->localHost->makeAddCreditCardRequestBody(instrument, address);
}

std::shared_ptr<HLVSession> RemoteHost::activeSession() {
  return parts_->localHost->activeSession();
}

std::shared_ptr<HLVErrorFacade> RemoteHost::makeErrorFacade() {
  return parts_->localHost->makeErrorFacade();
}

std::shared_ptr<PLVInAppClient> RemoteHost::inAppClient() { return parts_->provider; }

std::shared_ptr<PLVCreditCardPaymentInstrument> RemoteHost::makeCreditCardPaymentInstrument(
    const NullableString& pan, const NullableString& expiryMonth, const NullableString& expiryYear,
    const NullableString& cvv, const NullableString& cardHolder) {
  return parts_->localHost->makeCreditCardPaymentInstrument(pan, expiryMonth, expiryYear, cvv,
                                                            cardHolder);
}

}  // namespace hlv::services
