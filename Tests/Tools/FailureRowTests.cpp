// The failures of docs/failures.md that a command line reaches: the whole kit against the sandbox.
#include <gtest/gtest.h>

#include <ostream>
#include <vector>

#include "Tests/Tools/Command.h"

namespace hlv {
namespace {

using testing::Command;

struct FailureRow {
  const char* name;
  /// The last one meets the failure.
  const char* commands;
  int status;
  /// What the last command shows, among other things, and what it must not show.
  const char* shows;
  const char* hides = "";
  /// What comes before.
  std::string before = Command::guest;
};

void PrintTo(const FailureRow& row, std::ostream* out) { *out << row.name; }

const char* const noIdentifier =
    "Added instrument to external payment system doesn't have identifier";
const char* const inAgreement = "Both sides agree.";
const char* const inDisagreement = "1 does not match.";

const std::vector<FailureRow> withoutCard = {
    {"NoEntry", "--enabling no-entry foreground", 0,
     "Configuration must have HLVSDKPaylevenKit in kits array"},
    {"WrongClass", "--enabling wrong-class foreground", 0,
     "Configuration for PaylevenKit must be kind of HLVSDKPaylevenKitConfiguration class"},
    {"NoKey", "--enabling no-key foreground", 0,
     "Configuration for PaylevenKit must have payment key"},
    {"NotEnabled", "--enabling none add --test-card visa", 1, "the kit is not enabled"},
    {"NoCard", "add --without card", 1, "no card came back"},
    {"AddOffline", "network off; add --test-card visa", 1, "HLVURLErrorDomain 1"},
    {"TokenRefused", "add --test-card declined", 1,
     "  For the developer: The payment provider answered: PLVErrorDomain"},
    {"NoToken", "add --test-card no-token", 1, "  userToken\n"},
    {"NeverAnswered", "fault arm createUserToken never; add --test-card visa", 1,
     "never completes: the service never answered createUserToken"},
    {"LookupFails", "fault arm getPaymentInstrumentsList error; add --test-card visa", 1,
     "PLVErrorDomain 500", "addCreditCardForGuest"},
    {"FirstWithoutIdentifier", "add --test-card no-identifier", 1, noIdentifier,
     "addCreditCardForGuest"},
    {"FirstUnusable", "add --test-card other-state", 1, noIdentifier, "addCreditCardForGuest"},
    {"FirstTwice", "fault arm createUserToken twice; add --test-card visa", 0, inAgreement},
    {"FirstRefused", "add --test-card backend-refused", 1, "HLVBackendErrorDomain"},
    {"UpdateFailsFirst", "fault arm updateCurrentGuestWithRequest error; add --test-card visa", 1,
     "HLVBackendErrorDomain 500", "addPaymentInstrument: error HLVBackendErrorDomain 500, guest, "},
    {"UpdateFailsLast",
     "fault arm updateCurrentGuestWithRequest error --delay 1; add --test-card visa", 1,
     "addPaymentInstrument: error HLVBackendErrorDomain 500, guest, card"},
    {"SyncWithoutToken", "sync", 0, "the guest has no provider token yet"},
    {"DeleteWithoutToken", "delete crd --use-case default", 1, "paymentToken is missing"},
};

const std::vector<FailureRow> withCard = {
    {"FurtherRefused", "add --test-card declined", 1, "Failed to add new payment instrument."},
    {"FurtherWithoutIdentifier", "add --test-card no-identifier", 1, noIdentifier},
    {"FurtherRefusedByBackend", "add --test-card backend-refused", 1, "no card came back",
     "Failed to add"},
    {"NoID", "delete ID --without id", 1, "halvoID is missing"},
    {"NoUseCase", "delete ID --without use-case", 1, "useCase is missing"},
    {"NoGuest", "delete ID --without guest", 1, "  guest.paylevenToken\n"},
    {"UnknownCard", "delete crd_other --use-case default", 1, "existedCard is missing",
     "kit → assert"},
    {"DeleteOffline", "network off; delete ID", 1, "HLVURLErrorDomain 1"},
    {"DeletionRefused", "fault arm deleteCreditCardWithID error; delete ID", 1,
     "HLVBackendErrorDomain 500", "kit → provider  service"},
    {"DeletionListFails", "fault arm getPaymentInstrumentsList error; delete ID", 0,
     "paylevenInstruments"},
    {"DeletionWithoutList", "fault arm getPaymentInstrumentsList no-list; delete ID", 0,
     "paylevenInstruments"},
    {"NothingToRemove", "delete ID --use-case private", 0, inDisagreement},
    {"RemovalFails", "fault arm removePaymentInstrument error; delete ID", 1, inDisagreement},
    {"UpdateRefused", "fault arm updateCreditCard error; update ID --city Bonn", 1,
     "HLVBackendErrorDomain 500"},
    {"SyncListFails", "fault arm getPaymentInstrumentsList error --use-case business; sync", 1,
     "PLVErrorDomain 500", "removePaymentInstrument"},
    {"SyncWithoutCardList", "fault arm fetchGuestCreditCards no-list; sync", 0, inDisagreement},
    {"SyncBothFail",
     "fault arm fetchGuestCreditCards error --code 7; "
     "fault arm getPaymentInstrumentsList error --delay 1; sync",
     1, "Failed to synchronize payment instruments. The payment provider answered"},
    {"SyncRemovalFails", "orphan --test-card amex; fault arm removePaymentInstrument error; sync",
     0, "Failed to remove payment instrument from external payment system."},
    {"SyncFindsNothing", "delete ID; sync", 0, "Nothing to synchronize. No external payment"},
    {"SyncAfterADeletionThatStoppedHalfWay",
     "fault arm removePaymentInstrument error; delete ID; sync", 0, inAgreement},
};

std::vector<FailureRow> rows() {
  auto all = withoutCard;
  for (auto row : withCard) {
    row.before = Command::guestWithCard;
    all.push_back(row);
  }
  return all;
}

class ToolFailure : public ::testing::TestWithParam<FailureRow> {};

TEST_P(ToolFailure, ComesOutAsDocumented) {
  const auto& row = GetParam();
  const auto last = Command(row.before).run(row.commands);
  EXPECT_EQ(last.status, row.status) << last.out << last.err;
  EXPECT_NE((last.out + last.err).find(row.shows), std::string::npos) << last.out << last.err;
  EXPECT_TRUE(!*row.hides || last.out.find(row.hides) == std::string::npos) << last.out;
}

INSTANTIATE_TEST_SUITE_P(Each, ToolFailure, ::testing::ValuesIn(rows()),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace hlv
