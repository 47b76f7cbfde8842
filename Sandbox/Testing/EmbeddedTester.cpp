#include "Sandbox/Testing/EmbeddedTester.h"

#include <string>
#include <utility>

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

class EmbeddedTester final : public Tester {
 public:
  EmbeddedTester(std::shared_ptr<Store> store, std::shared_ptr<Journal> journal)
      : store_(std::move(store)), journal_(std::move(journal)) {}

  Result<> addOrphanInstrument(const CardFields& card) override {
    const auto entered = EnteredCard::make(card);
    auto done = changeSides(*store_, [&](Database& database, const std::string& email) -> Result<> {
      provider::storeOrphan(database, email, *entered);
      return {};
    });
    if (done) journal_->record("app", "provider", "store an orphan instrument");
    return done;
  }

  Result<> makeScenario(Scenario scenario) override {
    auto done = changeSides(*store_, [&](Database& database, const std::string& email) {
      return sandbox::makeScenario(database, email, scenario);
    });
    if (done) journal_->record("app", "app", "scenario " + std::string(textOf(scenario)));
    return done;
  }

  Result<std::int64_t> arm(const Fault& fault) override {
    using Armed = Result<std::int64_t>;
    if (const auto check = checkFault(fault); !check) return Armed::failure(check.problem());
    try {
      return store_->write([&](Database& database) { return insertFault(database, fault); });
    } catch (const StoreFailure& failure) {
      return Armed::failure(failure.what());
    }
  }

  std::vector<Fault> armed() override { return store_->read(readFaults); }

  std::vector<Firing> firings() override { return store_->read(readFirings); }

  void clearFaults() override { store_->write(removeAllFaults); }

 private:
  const std::shared_ptr<Store> store_;
  const std::shared_ptr<Journal> journal_;
};

}  // namespace

std::shared_ptr<Tester> makeTester(std::shared_ptr<Store> store, std::shared_ptr<Journal> journal) {
  return std::make_shared<EmbeddedTester>(std::move(store), std::move(journal));
}

}  // namespace hlv::sandbox
