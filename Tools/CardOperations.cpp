#include "Tools/CardOperations.h"

#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Public/HLVSDKPaymentManager.h"
#include "Tools/SideBySide.h"

namespace hlv::tool {
namespace {

using Outcome = Report::Outcome;

std::string named(const HLVSDKCreditCard& card) {
  return card.brand().value_or("card") + " •••• " + card.lastFourDigits().value_or("????") + " (" +
         card.useCase().value_or("no use case") + ")";
}

/// The report of an answer. `done` says what a success did, and `undone` what a failure did not.
Report reportOf(const Session& session, const Session::Answer& answer, const std::string& done,
                const std::string& undone) {
  if (answer.times == 0) {
    return session.report(Outcome::neverCompleted,
                          "The operation never completes: " + session.whyNothingCame() + ".");
  }
  auto sentence = answer.error ? undone : done;
  if (answer.times > 1) {
    sentence += " The completion was called " + std::to_string(answer.times) + " times.";
  }
  return session.report(answer.error ? Outcome::failed : Outcome::succeeded, sentence,
                        answer.error);
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
    sandbox.signIn(sandbox.signedInEmail().value_or(""));
  } else if (by == "reachability") {
    sandbox.setReachable(false);
    sandbox.setReachable(true);
  } else {
    sandbox.enterForeground();
  }
}

}  // namespace

Report CardOperations::add(Session& session, const std::shared_ptr<HLVSDKPaymentInstrument>& card,
                           const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                           const std::shared_ptr<HLVSDKGuest>& guest) {
  session.begin("add");
  session.enableKit();
  const auto answer = session.call("addPaymentInstrument", [&](HLVSDKGuestCardCompletion received) {
    HLVSDKPaymentManager::make()->addPaymentInstrument(card, address, guest, std::move(received));
  });
  if (answer.times > 0 && !answer.card && !answer.error) {
    return session.report(Outcome::broughtNothing,
                          "The kit reports no error, but no card came back: nothing was registered "
                          "at the backend.");
  }
  const auto registered =
      answer.card ? named(*answer.card) + " as " + answer.card->halvoID().value_or("?") : "";
  return reportOf(session, answer, "Added " + registered + ".",
                  answer.card ? "The backend registered " + registered +
                                    ", and the operation reports an error all the same."
                              : "The card was not added.");
}

Report CardOperations::update(Session& session, const NullableString& ID,
                              const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                              const std::shared_ptr<HLVSDKGuest>& guest) {
  session.begin("update");
  session.enableKit();
  const auto answer =
      session.call("updatePaymentInstrument", [&](HLVSDKGuestCardCompletion received) {
        HLVSDKPaymentManager::make()->updatePaymentInstrument(ID, address, guest,
                                                              std::move(received));
      });
  std::string changed = "The billing address is changed.";
  for (const auto& card : session.backendCards()) {
    if (card.halvoID == ID) {
      changed = "The billing address of " + card.brand + " •••• " + card.lastFourDigits +
                " is now " + describe(card.billingAddress) + ".";
    }
  }
  return reportOf(session, answer, changed, "The billing address was not changed.");
}

Report CardOperations::remove(Session& session, const NullableString& ID,
                              const NullableString& useCase,
                              const std::shared_ptr<HLVSDKGuest>& guest) {
  session.begin("delete");
  session.enableKit();
  const auto answer =
      session.call("deletePaymentInstrumentWithID", [&](const HLVSDKGuestCardCompletion& received) {
        HLVSDKPaymentManager::make()->deletePaymentInstrumentWithID(
            ID, useCase, guest, [received](std::shared_ptr<HLVSDKGuest> updated, ErrorPtr error) {
              received(std::move(updated), nullptr, std::move(error));
            });
      });
  return reportOf(session, answer, "The card is deleted.",
                  answer.guest
                      ? "The card is deleted at the backend, but its instrument could not be "
                        "removed at the provider."
                      : "The card was not deleted.");
}

Report CardOperations::synchronize(Session& session, const std::string& by) {
  const auto guest = session.guest();
  session.begin("sync");
  session.enableKit();
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
  } else if (Session::kitIsEnabled() && length(guest->paylevenToken()) == 0) {
    report.sentence = "Nothing to synchronise: the guest has no provider token yet.";
  } else {
    report.outcome = Outcome::neverCompleted;
    report.sentence = "The synchronisation never completes: " + session.whyNothingCame() + ".";
  }
  return report;
}

NullableString CardOperations::useCaseOf(Session& session, const std::string& ID) {
  for (const auto& card : session.backendCards()) {
    if (card.halvoID == ID) return card.useCase;
  }
  return std::nullopt;
}

}  // namespace hlv::tool
