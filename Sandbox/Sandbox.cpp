#include "Sandbox/Sandbox.h"

#include <utility>

#include "Platform/Platform.h"
#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Backend/BackendTables.h"
#include "Sandbox/Errors/SandboxError.h"
#include "Sandbox/Host/Constants.h"
#include "Sandbox/Host/SandboxHost.h"
#include "Sandbox/Provider/Provider.h"
#include "Sandbox/Store/Identifiers.h"
#include "Sandbox/Store/Settings.h"
#include "Sandbox/Testing/Reset.h"
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

std::string sentenceOf(const ErrorPtr& error) {
  return error->localizedDescription().value_or("The provider refuses it.");
}

}  // namespace

Sandbox::Opened Sandbox::open(const SandboxOptions& options) {
  auto opened = Store::open(options.storePath);
  if (!opened.store) return {nullptr, opened.problem};
  try {
    if (opened.isNew && options.seed) {
      opened.store->write([&](Database& database) { storeSeed(database, *options.seed); });
    }
  } catch (const StoreFailure& failure) {
    return {nullptr, failure.what()};
  }
  return over(std::move(opened.store), options);
}

Sandbox::Opened Sandbox::openInMemory() { return over(Store::openInMemory(), {}); }

Sandbox::Opened Sandbox::over(std::shared_ptr<Store> store, const SandboxOptions& options) {
  try {
    auto remote = options.remoteLogPath.empty() && options.storePath.empty()
                      ? LogSink::toNowhere()
                      : LogSink::toFile(options.remoteLogPath.empty() ? options.storePath + ".log"
                                                                      : options.remoteLogPath);
    auto console = options.logToConsole ? LogSink::toStandardError() : LogSink::toNowhere();
    auto parts = std::make_shared<Parts>(std::move(store), std::move(remote), std::move(console));
    return {std::shared_ptr<Sandbox>(new Sandbox(std::move(parts))), ""};
  } catch (const std::runtime_error& failure) {
    return {nullptr, failure.what()};
  }
}

Sandbox::Sandbox(std::shared_ptr<Parts> parts)
    : parts_(std::move(parts)), host_(std::make_shared<SandboxHost>(parts_)) {}

Sandbox::~Sandbox() = default;

std::shared_ptr<Host> Sandbox::host() const { return host_; }

std::string Sandbox::problemOfAddress(const std::string& email) {
  return backend::problemOfAddress(email);
}

std::string Sandbox::signIn(const std::string& email) {
  auto problem = backend::problemOfAddress(email);
  if (!problem.empty()) return problem;
  parts_->store->write([&](Database& database) { backend::signIn(database, email); });
  announceAuthorisation(*parts_->journal, true);
  return "";
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

Faults& Sandbox::faults() { return *parts_->faults; }

Journal& Sandbox::journal() { return *parts_->journal; }

std::optional<std::string> Sandbox::note(const std::string& name) const {
  return parts_->store->read(
      [&](Database& database) { return readSetting(database, "note " + name); });
}

void Sandbox::setNote(const std::string& name, const std::string& text) {
  parts_->store->write([&](Database& database) { writeSetting(database, "note " + name, text); });
}

std::int64_t Sandbox::changes() const { return parts_->store->changes(); }

std::string Sandbox::addOrphanInstrument(const CardFields& card) {
  const auto email = signedInEmail();
  if (!email) return "Nobody is signed in.";
  try {
    const auto entered = EnteredCard::make(card);
    parts_->store->write(
        [&](Database& database) { provider::storeOrphan(database, *email, *entered); });
  } catch (const Refusal& refusal) {
    return sentenceOf(refusal.error);
  }
  parts_->journal->record("app", "provider", "store an orphan instrument");
  return "";
}

std::vector<std::string> Sandbox::scenarios() {
  std::vector<std::string> names;
  for (const auto scenario : allScenarios()) names.emplace_back(textOf(scenario));
  return names;
}

std::string Sandbox::makeScenario(const std::string& name) {
  const auto email = signedInEmail();
  if (!email) return "Nobody is signed in.";
  const auto scenario = scenarioNamed(name);
  if (!scenario) return noSuchScenario(name);
  try {
    auto problem = parts_->store->write(
        [&](Database& database) { return sandbox::makeScenario(database, *email, *scenario); });
    if (problem.empty()) parts_->journal->record("app", "app", "scenario " + name);
    return problem;
  } catch (const Refusal& refusal) {
    return sentenceOf(refusal.error);
  }
}

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
