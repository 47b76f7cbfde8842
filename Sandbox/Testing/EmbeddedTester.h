// The tester of a sandbox in this process. Private to the sandbox.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "Sandbox/Calls/Journal.h"
#include "Sandbox/Store/Store.h"
#include "Sandbox/Testing/Tester.h"

namespace hlv::sandbox {

/// Threading: any.
class EmbeddedTester final : public Tester {
 public:
  EmbeddedTester(std::shared_ptr<Store> store, std::shared_ptr<Journal> journal)
      : store_(std::move(store)), journal_(std::move(journal)) {}

  Result<> addOrphanInstrument(const CardFields& card) override;
  Result<> makeScenario(Scenario scenario) override;
  Result<std::int64_t> arm(const Fault& fault) override;
  std::vector<Fault> armed() override;
  std::vector<Firing> firings() override;
  void clearFaults() override;

 private:
  const std::shared_ptr<Store> store_;
  const std::shared_ptr<Journal> journal_;
};

}  // namespace hlv::sandbox
