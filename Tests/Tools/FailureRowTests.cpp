// The failures of docs/failures.md that a command line reaches: the whole kit against the sandbox.
#include <gtest/gtest.h>

#include <ostream>
#include <sstream>

#include "Tests/Tools/Command.h"

namespace hlv {
namespace {

using testing::Command;
using testing::Finished;

struct FailureRow {
  const char* name;
  /// Commands with a semicolon between; ID stands for the first card's identifier. The last one
  /// meets the failure.
  const char* commands;
  int status;
  /// What the last command shows, among other things, and what it must not show.
  const char* shows;
  const char* hides = "";
};

void PrintTo(const FailureRow& row, std::ostream* out) { *out << row.name; }

const char* const noIdentifier =
    "Added instrument to external payment system doesn't have identifier";
const char* const inAgreement = "Both sides agree.";
const char* const inDisagreement = "1 does not match.";

const FailureRow beforeTheFirstCard[] = {
    {"NoEntry", "--enabling no-entry foreground", 0,
     "Configuration must have HLVSDKPaylevenKit in kits array"},
    {"WrongClass", "--enabling wrong-class foreground", 0,
     "Configuration for PaylevenKit must be kind of HLVSDKPaylevenKitConfiguration class"},
    {"NoKey", "--enabling no-key foreground", 0,
     "Configuration for PaylevenKit must have payment key"},
    {"NoCard", "add --without card", 0, "no card came back"},
    {"AddOffline", "network off; add --test-card visa", 1, "HLVURLErrorDomain 1"},
    {"TokenRefused", "add --test-card declined", 1,
     "The payment provider answered: PLVErrorDomain"},
    {"NoToken", "add --test-card no-token", 1, "  userToken\n"},
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
    {"DeleteWithoutToken", "delete crd --use-case default", 1, "paymentToken is missing"},
};

const FailureRow afterTheFirstCard[] = {
    {"FurtherRefused", "add --test-card declined", 1, "Failed to add new payment instrument."},
    {"FurtherWithoutIdentifier", "add --test-card no-identifier", 1, noIdentifier},
    {"FurtherRefusedByBackend", "add --test-card backend-refused", 0, "no card came back",
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
    {"NothingToRemove", "delete ID --use-case private", 0, inDisagreement},
    {"RemovalFails", "fault arm removePaymentInstrument error; delete ID", 1, inDisagreement},
    {"UpdateRefused", "fault arm updateCreditCard error; update ID --city Bonn", 1,
     "HLVBackendErrorDomain 500"},
    {"SyncListFails", "fault arm getPaymentInstrumentsList error --use-case business; sync", 1,
     "PLVErrorDomain 500", "removePaymentInstrument"},
    {"SyncBothFail",
     "fault arm fetchGuestCreditCards error --code 7; "
     "fault arm getPaymentInstrumentsList error --delay 1; sync",
     1, "Failed to synchronize payment instruments. The payment provider answered"},
    {"SyncRemovalFails", "plant --test-card amex; fault arm removePaymentInstrument error; sync", 0,
     "Failed to remove payment instrument from external payment system."},
    {"SyncFindsNothing", "delete ID; sync", 0, "Nothing to synchronize. No external payment"},
    {"SyncAfterADeletionThatStoppedHalfWay",
     "fault arm removePaymentInstrument error; delete ID; sync", 0, inAgreement},
};

class ToolFailure : public ::testing::TestWithParam<FailureRow> {
 protected:
  /// Runs every command and returns what the last one said.
  Finished runAll(const std::string& commands) {
    Finished last;
    std::istringstream lines(commands);
    for (std::string line; std::getline(lines, line, ';');) {
      std::vector<std::string> arguments;
      std::istringstream words(line);
      for (std::string word; words >> word;) arguments.push_back(word == "ID" ? cardID() : word);
      last = command.run(arguments);
    }
    return last;
  }

  void expectFailure() {
    const auto& row = GetParam();
    const auto last = runAll(row.commands);
    EXPECT_EQ(last.status, row.status) << last.out << last.err;
    EXPECT_NE(last.out.find(row.shows), std::string::npos) << last.out << last.err;
    const bool hidden = !*row.hides || last.out.find(row.hides) == std::string::npos;
    EXPECT_TRUE(hidden) << last.out;
  }

  Command command;

 private:
  std::string cardID() {
    return command.run({"cards", "--json"}).document()["backend"][0]["halvoID"];
  }
};

class BeforeTheFirstCard : public ToolFailure {};
class AfterTheFirstCard : public ToolFailure {};

TEST_P(BeforeTheFirstCard, ComesOutAsDocumented) {
  command.run({"sign-in", "guest@example.com"});
  expectFailure();
}

TEST_P(AfterTheFirstCard, ComesOutAsDocumented) {
  runAll("sign-in guest@example.com; add --test-card visa");
  expectFailure();
}

std::string nameOfRow(const ::testing::TestParamInfo<FailureRow>& row) { return row.param.name; }

INSTANTIATE_TEST_SUITE_P(Each, BeforeTheFirstCard, ::testing::ValuesIn(beforeTheFirstCard),
                         nameOfRow);
INSTANTIATE_TEST_SUITE_P(Each, AfterTheFirstCard, ::testing::ValuesIn(afterTheFirstCard),
                         nameOfRow);

}  // namespace
}  // namespace hlv
