#include "Tools/Session.h"

#include <mutex>

#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"
#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Platform/Default/DefaultPlatform.h"
#include "Public/HLVSDKPayleven.h"
#include "Sandbox/RecordedCall.h"
#include "Tools/Enabling.h"
#include "Tools/Problem.h"
#include "Tools/StoreFiles.h"

namespace hlv::tool {
namespace {

std::shared_ptr<sandbox::Sandbox> openSandbox(const GlobalOptions& options) {
  sandbox::SandboxOptions sandboxOptions;
  sandboxOptions.storePath = StoreFiles::pathOrDefault(options.storePath);
  sandboxOptions.seed = options.seed;
  sandboxOptions.logToConsole = options.logToConsole;
  const auto opened = sandbox::Sandbox::open(sandboxOptions);
  if (!opened.sandbox) throw Problem(opened.problem);
  return opened.sandbox;
}

std::shared_ptr<client::RemoteHost> openRemote(const GlobalOptions& options,
                                               const std::shared_ptr<sandbox::Sandbox>& local) {
  if (options.backendURL.empty() && options.providerURL.empty()) return nullptr;
  return client::RemoteHost::open(local, {options.backendURL, options.providerURL});
}

std::string sentenceOf(const ErrorPtr& error) {
  return error->localizedDescription().value_or("The services cannot be used.");
}

/// The kit keeps its guest, and a synchroniser that failed for one guest stays busy for the next.
void followGuest() {
  const auto kit = HLVSDKPayleven::sharedInstance();
  const auto guest = HLVSDKGuest::currentGuest();
  if (!kit || kit->currentGuest() == guest) return;
  kit->setCurrentGuest(guest);
  kit->setUpPaymentInstrumentsSynchronizer();
}

/// Where a completion writes, from whatever thread and however late.
struct Received {
  std::mutex mutex;
  Session::Answer answer;
};

}  // namespace

Session::Session(const GlobalOptions& options)
    : options_(options), sandbox_(openSandbox(options)), remote_(openRemote(options, sandbox_)) {
  Host::install(remote_ ? remote_ : sandbox_->host());
  // Before the kit is enabled, so that this comes before the kit's own observer.
  followsGuest_ = Platform::current()->notificationCenter()->observe(
      kHLVSDKDidChangeAuthorizationStatusNotification(),
      [](const Notification&) { followGuest(); });
}

Session::~Session() {
  HLVSDKPayleven::resetSharedInstance();
  Host::install(nullptr);
}

std::shared_ptr<sandbox::Tester> Session::tester() const {
  if (remote_) return remote_->tester();
  return std::make_shared<sandbox::EmbeddedTester>(sandbox_);
}

std::string Session::storePath() const { return StoreFiles::pathOrDefault(options_.storePath); }

void Session::requireOwnServices(const std::string& command) const {
  if (remote_)
    throw Problem("`" + command + "` works on a store, without --backend and --provider.");
}

void Session::signIn(const std::string& email) {
  if (remote_) {
    if (const auto error = remote_->signIn(email)) throw Problem(sentenceOf(error));
  }
  if (const auto problem = sandbox_->signIn(email); !problem.empty()) throw Problem(problem);
}

void Session::signOut() {
  const auto error = remote_ ? remote_->signOut() : nullptr;
  sandbox_->signOut();
  if (error) throw Problem(sentenceOf(error));
}

std::vector<sandbox::BackendCard> Session::backendCards() const {
  return remote_ ? remote_->sides().backend : sandbox_->backendCards();
}

bool Session::isQuiet() const { return remote_ ? remote_->isQuiet() : sandbox_->isQuiet(); }

std::shared_ptr<HLVSDKGuest> Session::guest() const {
  auto guest = HLVSDKGuest::currentGuest();
  if (!guest) throw Problem("Nobody is signed in; begin with `paylevenkit sign-in EMAIL`.");
  if (remote_) {
    if (const auto error = remote_->refresh()) throw Problem(sentenceOf(error));
  }
  return guest;
}

void Session::begin(const std::string& operation) {
  operation_ = operation;
  firingsBefore_ = sandbox_->faults().firings().size();
  sandbox_->journal().beginOperation(operation);
}

void Session::enableKit() { Enabling::enable(options_.enabling); }

bool Session::kitIsEnabled() { return HLVSDKPayleven::sharedInstance() != nullptr; }

void Session::settle() {
  const auto platform = DefaultPlatform::shared();
  // A request that goes out between the first two looks shows in the third. Whatever it posts to
  // the main queue waits there, because this is the main thread.
  platform->runUntil([&] { return isQuiet() && platform->isIdle() && isQuiet(); });
}

Session::Answer Session::call(const std::string& what,
                              const std::function<void(HLVSDKGuestCardCompletion)>& start) {
  const auto received = std::make_shared<Received>();
  start(sandbox::recordedCall(
      sandbox_, what,
      [received](const std::shared_ptr<HLVSDKGuest>& guest,
                 const std::shared_ptr<HLVSDKCreditCard>& card, const ErrorPtr& error) {
        const std::lock_guard lock(received->mutex);
        received->answer = {received->answer.times + 1, guest, card, error};
      }));
  settle();
  const std::lock_guard lock(received->mutex);
  return received->answer;
}

std::string Session::whyNothingCame() const {
  if (!kitIsEnabled()) return "the kit is not enabled, so the call reached nobody";
  const auto firings = sandbox_->faults().firings();
  for (auto i = firingsBefore_; i < firings.size(); ++i) {
    if (firings[i].kind == sandbox::FaultKind::never) {
      return "the service never answered " + std::string(textOf(firings[i].operation)) +
             " (armed fault " + std::to_string(firings[i].faultNumber) + ")";
    }
  }
  return "nothing is on its way any more";
}

Report Session::attempt(const std::function<Report()>& act) const {
  try {
    return act();
  } catch (const std::exception& problem) {
    if (!hasBegun()) throw;
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

}  // namespace hlv::tool
