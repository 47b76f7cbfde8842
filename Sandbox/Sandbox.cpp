#include "Sandbox/Sandbox.h"

#include <utility>

#include "Platform/Platform.h"
#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Backend/BackendTables.h"
#include "Sandbox/Host/SandboxHost.h"
#include "Sandbox/Provider/Provider.h"
#include "Sandbox/Store/Identifiers.h"
#include "Sandbox/Store/Settings.h"
#include "Sandbox/Testing/Scenarios.h"

namespace hlv::sandbox {
namespace {

void post(const NullableString& name, Dictionary userInfo = {}) {
  Platform::current()->notificationCenter()->post({name.value_or(""), std::move(userInfo)});
}

void announceAuthorisation(Journal& journal, bool isAuthorised) {
  journal.record("app", "kit", "authorisation changed",
                 isAuthorised ? "authorised" : "not authorised");
  const auto constants = sandboxConstants();
  post(constants->authorizationStatusNotification, {{*constants->isAuthorizedKey, isAuthorised}});
}

using OpenedSandbox = Result<std::shared_ptr<Sandbox>>;

/// Over the store, which keeps the seed when it is new.
OpenedSandbox overSeeded(std::shared_ptr<Store> store, const SandboxOptions& options) {
  try {
    if (store->isNew() && options.seed) {
      store->write([&](Database& database) { storeSeed(database, *options.seed); });
    }
  } catch (const StoreFailure& failure) {
    return OpenedSandbox::failure(failure.what());
  }
  return Sandbox::over(std::move(store), options);
}

}  // namespace

OpenedSandbox Sandbox::open(const SandboxOptions& options) {
  auto store = Store::open(options.storePath);
  if (!store) return OpenedSandbox::failure(store.problem());
  return overSeeded(std::move(*store), options);
}

OpenedSandbox Sandbox::openInMemory(SandboxOptions options) {
  options.storePath.clear();
  return overSeeded(Store::openInMemory(), options);
}

OpenedSandbox Sandbox::over(std::shared_ptr<Store> store, const SandboxOptions& options) {
  const auto path = !options.remoteLogPath.empty() || options.storePath.empty()
                        ? options.remoteLogPath
                        : options.storePath + ".log";
  auto remote = path.empty() ? nullSink() : fileSink(path);
  if (!remote) return OpenedSandbox::failure(remote.problem());
  auto console = options.logToConsole ? standardErrorSink() : nullSink();
  auto parts = std::make_shared<Parts>(std::move(store), std::move(*remote), std::move(console));
  return std::shared_ptr<Sandbox>(new Sandbox(std::move(parts)));
}

Sandbox::Sandbox(std::shared_ptr<Parts> parts)
    : parts_(std::move(parts)), host_(std::make_shared<SandboxHost>(parts_)) {}

Sandbox::~Sandbox() = default;

std::shared_ptr<Host> Sandbox::host() const { return host_; }

std::shared_ptr<Tester> Sandbox::tester() const {
  return makeTester(parts_->store, parts_->journal);
}

Journal& Sandbox::journal() const { return *parts_->journal; }

Result<> Sandbox::checkAddress(const std::string& email) { return backend::checkAddress(email); }

Result<> Sandbox::signIn(const std::string& email) {
  auto check = backend::checkAddress(email);
  if (!check) return check;
  parts_->store->write([&](Database& database) { backend::signIn(database, email); });
  announceAuthorisation(*parts_->journal, true);
  return {};
}

void Sandbox::signOut() {
  parts_->store->write(backend::signOut);
  announceAuthorisation(*parts_->journal, false);
}

std::optional<std::string> Sandbox::signedInEmail() const {
  return parts_->store->readOrNothing(backend::signedInEmail);
}

void Sandbox::setReachable(bool reachable) {
  const std::int64_t state = reachable ? 1 : 0;
  const auto before = parts_->reachability->setState(state);
  parts_->journal->record("app", "kit", "reachability changed",
                          "from " + std::to_string(before) + " to " + std::to_string(state));
  const auto constants = sandboxConstants();
  post(constants->reachabilityStateNotification,
       {{*constants->reachabilityStateKey, state},
        {*constants->reachabilityPreviousStateKey, before}});
}

bool Sandbox::isReachable() const { return hlv::isReachable(parts_->reachability->currentState()); }

void Sandbox::enterForeground() {
  parts_->journal->record("app", "kit", "will enter foreground");
  post(UIApplicationWillEnterForegroundNotification);
}

std::optional<std::string> Sandbox::note(const std::string& name) const {
  return parts_->store->read(
      [&](Database& database) { return readSetting(database, "note " + name); });
}

void Sandbox::setNote(const std::string& name, const std::string& text) {
  parts_->store->write([&](Database& database) { writeSetting(database, "note " + name, text); });
}

std::int64_t Sandbox::changes() const { return parts_->store->changes(); }

void Sandbox::reset() {
  // First, so that what they record is forgotten too, and a kit has no guest to synchronise.
  if (signedInEmail()) signOut();
  if (!isReachable()) setReachable(true);
  parts_->store->write(forgetEverything);
}

std::vector<BackendCard> Sandbox::backendCards() const {
  return parts_->store->read([](Database& database) {
    const auto email = backend::signedInEmail(database);
    return email ? readCards(database, *email) : std::vector<BackendCard>();
  });
}

std::vector<ProviderInstrument> Sandbox::providerInstruments() const {
  return parts_->store->read([](Database& database) {
    const auto email = backend::signedInEmail(database);
    return email ? provider::instrumentsOf(database, *email) : std::vector<ProviderInstrument>();
  });
}

bool Sandbox::isQuiet() const { return parts_->answers->isQuiet(); }

}  // namespace hlv::sandbox
