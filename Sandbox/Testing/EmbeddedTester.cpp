#include "Sandbox/Testing/EmbeddedTester.h"

#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Errors/SandboxError.h"
#include "Sandbox/Faults/FaultTables.h"
#include "Sandbox/Provider/Provider.h"
#include "Sandbox/Testing/Scenarios.h"

namespace hlv::sandbox {
namespace {

/// Does `change` for the signed-in guest; a refusal of the services is its result.
template <class Change>
Result<> changeSides(Store& store, Change change) {
  try {
    return store.write([&](Database& database) {
      const auto email = backend::signedInEmail(database);
      return email ? change(database, *email) : Result<>::failure("Nobody is signed in.");
    });
  } catch (const Refusal& refusal) {
    return Result<>::failure(refusal.what());
  }
}

}  // namespace

Result<> EmbeddedTester::addOrphanInstrument(const CardFields& card) {
  const auto entered = EnteredCard::make(card);
  auto done = changeSides(*store_, [&](Database& database, const std::string& email) -> Result<> {
    provider::storeOrphan(database, email, *entered);
    return {};
  });
  if (done) journal_->record("app", "provider", "store an orphan instrument");
  return done;
}

Result<> EmbeddedTester::makeScenario(Scenario scenario) {
  auto done = changeSides(*store_, [&](Database& database, const std::string& email) {
    return sandbox::makeScenario(database, email, scenario);
  });
  if (done) journal_->record("app", "app", "scenario " + std::string(textOf(scenario)));
  return done;
}

Result<std::int64_t> EmbeddedTester::arm(const Fault& fault) {
  using Armed = Result<std::int64_t>;
  if (const auto check = checkFault(fault); !check) return Armed::failure(check.problem());
  try {
    return store_->write([&](Database& database) { return insertFault(database, fault); });
  } catch (const StoreFailure& failure) {
    return Armed::failure(failure.what());
  }
}

std::vector<Fault> EmbeddedTester::armed() { return store_->read(readFaults); }

std::vector<Firing> EmbeddedTester::firings() { return store_->read(readFirings); }

void EmbeddedTester::clearFaults() { store_->write(removeAllFaults); }

}  // namespace hlv::sandbox
