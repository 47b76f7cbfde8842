// What a tester does to services in other processes.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "Sandbox/Records/SandboxDescription.h"
#include "Sandbox/Testing/Tester.h"
#include "Values/NullableString.h"

namespace hlv::client {

class HttpClient;

/// Asks the test control of a sandbox, below the provider's URL, and waits for the replies. Members
/// beside those of `sandbox::Tester` throw `ClientError`.
///
/// Threading: any.
class RemoteTester final : public sandbox::Tester {
 public:
  /// `guest` names the guest whom instruments and scenarios are for; missing leaves it to the
  /// service.
  RemoteTester(std::shared_ptr<const HttpClient> control, std::function<NullableString()> guest);

  Result<> addOrphanInstrument(const sandbox::CardFields& card) override;
  Result<> makeScenario(sandbox::Scenario scenario) override;
  Result<std::int64_t> arm(const sandbox::Fault& fault) override;
  std::vector<sandbox::Fault> armed() override;
  std::vector<sandbox::Firing> firings() override;
  void clearFaults() override;

  /// Replaces everything but the number. Returns what is armed now.
  sandbox::Fault changeFault(std::int64_t number, const sandbox::Fault& fault) const;
  void removeFault(std::int64_t number) const;

  /// Forgets everything in the sandbox. Returns what is left.
  sandbox::SandboxDescription reset() const;
  /// Switches the network of the sandbox, not of this side.
  void setNetworkOn(bool isOn) const;

 private:
  const std::shared_ptr<const HttpClient> control_;
  const std::function<NullableString()> guest_;
};

}  // namespace hlv::client
