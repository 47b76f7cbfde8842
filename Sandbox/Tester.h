// What a tester does to the two services, wherever they are.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Sandbox/Sandbox.h"

namespace hlv::sandbox {

/// Members that return a text return one plain sentence when they cannot, or an empty string; the
/// others throw std::runtime_error with such a sentence.
///
/// Threading: any.
class Tester {
 public:
  virtual ~Tester() = default;
  virtual std::string addOrphanInstrument(const CardFields& card) = 0;
  virtual std::string makeScenario(const std::string& name) = 0;
  /// `number` becomes that of the armed fault; it may be null.
  virtual std::string arm(const Fault& fault, std::int64_t* number) = 0;
  virtual std::vector<Fault> armed() = 0;
  virtual std::vector<Firing> firings() = 0;
  virtual void clearFaults() = 0;
};

/// Of a sandbox in this process.
class EmbeddedTester final : public Tester {
 public:
  explicit EmbeddedTester(std::shared_ptr<Sandbox> sandbox) : sandbox_(std::move(sandbox)) {}
  std::string addOrphanInstrument(const CardFields& card) override {
    return sandbox_->addOrphanInstrument(card);
  }
  std::string makeScenario(const std::string& name) override {
    return sandbox_->makeScenario(name);
  }
  std::string arm(const Fault& fault, std::int64_t* number) override {
    return sandbox_->faults().arm(fault, number);
  }
  std::vector<Fault> armed() override { return sandbox_->faults().armed(); }
  std::vector<Firing> firings() override { return sandbox_->faults().firings(); }
  void clearFaults() override { sandbox_->faults().clear(); }

 private:
  const std::shared_ptr<Sandbox> sandbox_;
};

}  // namespace hlv::sandbox
