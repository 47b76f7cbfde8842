#include "Tools/CardOperations.h"

#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Tools/Output/SideBySide.h"

namespace hlv::sandbox::tool {
namespace {

using Outcome = Report::Outcome;

std::string named(const HLVSDKCreditCard& card) {
  return card.brand().value_or("card") + " •••• " + card.lastFourDigits().value_or("????") + " (" +
         card.useCase().value_or("no use case") + ")";
}

/// `done` says what a success did, and `undone` what a failure did not.
Report reportOf(const Session& session, const AppCall::Outcome& outcome, const std::string& done,
                const std::string& undone) {
  if (outcome.completions == 0) {
    return session.report(Outcome::neverCompleted,
                          "The operation never completes: " + session.whyNothingCame() + ".");
  }
  auto sentence = outcome.error ? undone : done;
  if (outcome.completions > 1) {
    sentence += " The completion was called " + std::to_string(outcome.completions) + " times.";
  }
  return session.report(outcome.error ? Outcome::failed : Outcome::succeeded, sentence,
                        outcome.error);
}

/// The log lines of an operation that begin with `words`.
std::vector<std::string> logged(const Report& report, const std::string& words) {
  std::vector<std::string> lines;
  for (const auto& event : report.timeline) {
    if (event.to == "log" && event.what.starts_with(words)) lines.push_back(event.what);
  }
  return lines;
}

std::string synchronized(const Report& report) {
  const auto asked = logged(report, "Will remove payment instrument").size();
  if (asked == 0) return "Synchronised: the provider held nothing that the backend does not know.";
  const auto removed = logged(report, "Successfully remove payment instrument").size();
  return "Synchronised: removed " + std::to_string(removed) + " of " + std::to_string(asked) +
         " that the backend does not know.";
}

void notify(Session& session, const std::string& by) {
  auto& sandbox = session.sandbox();
  if (by == "authorization") {
    sandbox.signIn(sandbox.signedInEmail().value_or("")).value();
  } else if (by == "reachability") {
    sandbox.setReachable(false);
    sandbox.setReachable(true);
  } else {
    sandbox.enterForeground();
  }
}

}  // namespace

Report addCard(Session& session, const std::shared_ptr<HLVSDKPaymentInstrument>& card,
               const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
               const std::shared_ptr<HLVSDKGuest>& guest) {
  session.beginWithKit("add");
  const auto outcome = session.outcomeOf(session.app().add(card, address, guest));
  if (outcome.completions > 0 && !outcome.card && !outcome.error) {
    return session.report(Outcome::broughtNothing,
                          "The kit reports no error, but no card came back: nothing was registered "
                          "at the backend.");
  }
  const auto registered =
      outcome.card ? named(*outcome.card) + " as " + outcome.card->halvoID().value_or("?") : "";
  return reportOf(session, outcome, "Added " + registered + ".",
                  outcome.card ? "The backend registered " + registered +
                                     ", and the operation reports an error all the same."
                               : "The card was not added.");
}

Report updateCard(Session& session, const NullableString& ID,
                  const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                  const std::shared_ptr<HLVSDKGuest>& guest) {
  session.beginWithKit("update");
  const auto outcome = session.outcomeOf(session.app().update(ID, address, guest));
  std::string changed = "The billing address is changed.";
  const auto cards = session.backendCards();
  if (const auto* card = findCard(cards, ID.value_or(""))) {
    changed = "The billing address of " + card->brand + " •••• " + card->lastFourDigits +
              " is now " + describe(card->billingAddress) + ".";
  }
  return reportOf(session, outcome, changed, "The billing address was not changed.");
}

Report removeCard(Session& session, const NullableString& ID, const NullableString& useCase,
                  const std::shared_ptr<HLVSDKGuest>& guest) {
  session.beginWithKit("delete");
  const auto outcome = session.outcomeOf(session.app().remove(ID, useCase, guest));
  return reportOf(session, outcome, "The card is deleted.",
                  outcome.guest
                      ? "The card is deleted at the backend, but its instrument could not be "
                        "removed at the provider."
                      : "The card was not deleted.");
}

Report synchronize(Session& session, const std::string& by) {
  const auto guest = session.guest();
  session.beginWithKit("sync");
  notify(session, by);
  session.settle();

  auto report = session.report(Outcome::succeeded, {});
  if (!logged(report, "Successfully synchronized").empty()) {
    report.sentence = synchronized(report);
  } else if (!logged(report, "Nothing to synchronize").empty()) {
    report.sentence = "Nothing to synchronise: the provider holds no instruments of the guest.";
  } else if (const auto failures = logged(report, "Failed to synchronize"); !failures.empty()) {
    report.outcome = Outcome::failed;
    report.sentence = failures.front();
  } else if (SimulatedApp::kitIsEnabled() && length(guest->paylevenToken()) == 0) {
    report.sentence = "Nothing to synchronise: the guest has no provider token yet.";
  } else {
    report.outcome = Outcome::neverCompleted;
    report.sentence = "The synchronisation never completes: " + session.whyNothingCame() + ".";
  }
  return report;
}

}  // namespace hlv::sandbox::tool
