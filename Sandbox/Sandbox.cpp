#include "Sandbox/Sandbox.h"

#include <utility>

#include "Platform/Platform.h"
#include "Sandbox/Constants.h"
#include "Sandbox/Logging/MaskedText.h"
#include "Sandbox/SandboxError.h"
#include "Sandbox/SandboxHost.h"
#include "Sandbox/Scenes.h"
#include "Sandbox/Store/Identifiers.h"
#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox {
namespace {

bool isAddress(const std::string& email) {
  const auto at = email.find('@');
  return at != std::string::npos && at > 0 && at + 1 < email.size() &&
         email.find_first_of(" \t\r\n") == std::string::npos;
}

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
      opened.store->write([&](Database& database) { plantSeed(database, *options.seed); });
    }
    auto remote = LogSink::toFile(options.remoteLogPath.empty() ? options.storePath + ".log"
                                                                : options.remoteLogPath);
    auto console = options.logToConsole ? LogSink::toStandardError() : LogSink::toNowhere();
    auto parts = std::make_shared<Parts>(opened.store, std::move(remote), std::move(console));
    return {std::shared_ptr<Sandbox>(new Sandbox(std::move(parts))), ""};
  } catch (const std::runtime_error& failure) {
    return {nullptr, failure.what()};
  }
}

Sandbox::Sandbox(std::shared_ptr<Parts> parts)
    : parts_(std::move(parts)),
      host_(std::make_shared<SandboxHost>(parts_, parts_->embedded)),
      hostBehindDoors_(hostBehindDoors(AsOne())) {}

Sandbox::~Sandbox() = default;

std::shared_ptr<Host> Sandbox::host() const { return host_; }

std::shared_ptr<Host> Sandbox::hostBehindDoors() const { return hostBehindDoors_; }

std::shared_ptr<Host> Sandbox::hostBehindDoors(const AsOne& asOne) const {
  return std::make_shared<SandboxHost>(parts_, parts_->makeClientsBehindDoors(asOne));
}

std::string Sandbox::signIn(const std::string& email) {
  if (!isAddress(email)) return "A guest signs in with an e-mail address.";
  if (maskedText(email) != email) return "An address may not hold what looks like a card number.";
  parts_->backend->signIn(email);
  announceAuthorisation(*parts_->journal, true);
  return "";
}

void Sandbox::signOut() {
  parts_->backend->signOut();
  announceAuthorisation(*parts_->journal, false);
}

std::optional<std::string> Sandbox::signedInEmail() const {
  return parts_->backend->signedInEmail();
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

KeptAnswers& Sandbox::keptAnswers() { return *parts_->keptAnswers; }

std::optional<std::string> Sandbox::note(const std::string& name) const {
  return parts_->store->read(
      [&](Database& database) { return readSetting(database, "note " + name); });
}

void Sandbox::setNote(const std::string& name, const std::string& text) {
  parts_->store->write([&](Database& database) { writeSetting(database, "note " + name, text); });
}

std::int64_t Sandbox::changes() const {
  return parts_->store->read([](Database& database) { return database.allChanges(); });
}

std::string Sandbox::plantInstrument(const CardFields& card) {
  const auto email = signedInEmail();
  if (!email) return "Nobody is signed in.";
  try {
    parts_->provider->plant(*email, EnteredCard::make(card));
  } catch (const Refusal& refusal) {
    return sentenceOf(refusal.error);
  }
  parts_->journal->record("app", "provider", "plant an instrument");
  return "";
}

std::vector<std::string> Sandbox::scenes() { return Scenes::names(); }

std::string Sandbox::makeScene(const std::string& name) {
  const auto email = signedInEmail();
  if (!email) return "Nobody is signed in.";
  try {
    auto problem = Scenes(*parts_->backend, *parts_->provider, *email).make(name);
    if (problem.empty()) parts_->journal->record("app", "app", "scene " + name);
    return problem;
  } catch (const Refusal& refusal) {
    return sentenceOf(refusal.error);
  }
}

void Sandbox::reset() {
  // First, so that what they tell is forgotten too, and a kit has no guest to synchronise.
  if (signedInEmail()) signOut();
  if (!isReachable()) setReachable(true);
  parts_->store->write([this](Database& database) {
    // Cards before guests and instruments before users, since they refer to them.
    for (const char* table : {"backend_cards", "backend_guests", "provider_instruments",
                              "provider_users", "faults", "firings", "events", "operations"}) {
      database.run(std::string("DELETE FROM ") + table);
    }
    parts_->keptAnswers->forgetAll();
  });
}

std::vector<BackendCard> Sandbox::backendCards() const {
  const auto email = signedInEmail();
  return email ? parts_->backend->cardsOf(*email) : std::vector<BackendCard>();
}

std::vector<ProviderInstrument> Sandbox::providerInstruments() const {
  const auto email = signedInEmail();
  return email ? parts_->provider->instrumentsOf(*email) : std::vector<ProviderInstrument>();
}

bool Sandbox::isQuiet() const { return parts_->answers->isQuiet(); }

}  // namespace hlv::sandbox
