#include "Tools/Session.h"

#include <utility>

#include "Platform/Default/DefaultPlatform.h"
#include "Tools/StoreFiles.h"
#include "Values/Problem.h"

namespace hlv::sandbox::tool {
namespace {

std::shared_ptr<Sandbox> openSandbox(const GlobalOptions& options) {
  SandboxOptions sandboxOptions;
  sandboxOptions.seed = options.seed;
  sandboxOptions.logToConsole = options.logToConsole;
  if (options.isInMemory) return Sandbox::openInMemory(sandboxOptions).value();
  sandboxOptions.storePath = storePathOrDefault(options.storePath);
  return Sandbox::open(sandboxOptions).value();
}

std::shared_ptr<client::RemoteHost> openRemote(const GlobalOptions& options,
                                               const std::shared_ptr<Sandbox>& local) {
  if (options.backendURL.empty() && options.providerURL.empty()) return nullptr;
  return client::RemoteHost::open(local, {options.backendURL, options.providerURL});
}

std::string sentenceOf(const ErrorPtr& error) {
  return error->localizedDescription().value_or("The services cannot be used.");
}

void requireNone(const ErrorPtr& error) {
  if (error) throw Problem(sentenceOf(error));
}

}  // namespace

void GlobalOptions::requireOwnServices(const std::string& command) const {
  if (backendURL.empty() && providerURL.empty()) return;
  throw Problem("`" + command + "` works on a store, without --backend and --provider.");
}

Session::Session(const GlobalOptions& options)
    : options_(options),
      sandbox_(openSandbox(options)),
      remote_(openRemote(options, sandbox_)),
      app_(sandbox_, remote_ ? remote_ : sandbox_->host(),
           [this] { return remote_ ? remote_->isQuiet() : sandbox_->isQuiet(); }) {}

std::shared_ptr<Tester> Session::tester() const {
  return remote_ ? remote_->tester() : sandbox_->tester();
}

std::string Session::storePath() const { return storePathOrDefault(options_.storePath); }

void Session::signIn(const std::string& email) {
  if (remote_) requireNone(remote_->signIn(email));
  sandbox_->signIn(email).value();
}

void Session::signOut() {
  const auto error = remote_ ? remote_->signOut() : nullptr;
  sandbox_->signOut();
  requireNone(error);
}

std::vector<BackendCard> Session::backendCards() const {
  return remote_ ? remote_->sides().backend : sandbox_->backendCards();
}

std::shared_ptr<HLVSDKGuest> Session::guest() const {
  auto guest = HLVSDKGuest::currentGuest();
  if (!guest) throw Problem("Nobody is signed in; begin with `paylevenkit sign-in EMAIL`.");
  if (remote_) requireNone(remote_->refresh());
  return guest;
}

void Session::begin(const std::string& operation) {
  operation_ = operation;
  const auto firings = sandbox_->tester()->firings();
  lastFiringBefore_ = firings.empty() ? 0 : firings.back().number;
  sandbox_->journal().beginOperation(operation);
}

void Session::beginWithKit(const std::string& operation) {
  begin(operation);
  enableKit();
}

void Session::settle() const {
  DefaultPlatform::shared()->runUntil([this] { return app_.isSettled(); });
}

AppCall::Outcome Session::outcomeOf(const std::shared_ptr<const AppCall>& call) const {
  settle();
  return call->outcome();
}

std::string Session::whyNothingCame() const {
  if (!SimulatedApp::kitIsEnabled()) {
    return "the kit is not enabled, so the call reached nobody";
  }
  for (const auto& [fault, operation, kind, number] : sandbox_->tester()->firings()) {
    if (number <= lastFiringBefore_) continue;
    if (kind == FaultKind::never || kind == FaultKind::stalled) {
      return "the service never answered " + std::string(textOf(operation)) + " (armed fault " +
             std::to_string(fault) + ")";
    }
  }
  return "nothing is on its way any more";
}

Report Session::attempt(const std::function<Report()>& act) const {
  try {
    return act();
  } catch (const std::exception& problem) {
    if (operation_.empty()) throw;
    return report(Report::Outcome::failed, problem.what());
  }
}

Report Session::report(const std::string& command) const {
  Report report;
  report.operation = command;
  if (remote_) {
    auto sides = remote_->sides();
    report.backend = std::move(sides.backend);
    report.provider = std::move(sides.provider);
    if (sides.error) report.unknownSides = sentenceOf(sides.error);
  } else {
    report.backend = sandbox_->backendCards();
    report.provider = sandbox_->providerInstruments();
  }
  return report;
}

Report Session::report(Report::Outcome outcome, std::string sentence, ErrorPtr error) const {
  auto result = report(operation_);
  result.outcome = outcome;
  result.sentence = std::move(sentence);
  result.error = std::move(error);
  const auto operations = sandbox_->journal().last(1);
  if (!operations.empty()) result.timeline = operations.back().events;
  return result;
}

Report Session::report(const Result<>& result, const std::string& sentence) const {
  return result ? report(Report::Outcome::succeeded, sentence)
                : report(Report::Outcome::failed, result.problem());
}

}  // namespace hlv::sandbox::tool
