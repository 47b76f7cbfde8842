// What a tester does to services in other processes. Private to the services.
#pragma once

#include <utility>

#include "Sandbox/Tester.h"
#include "Services/Remote/HttpClient.h"

namespace hlv::services {

/// Asks the provider's service, which has these for both, and waits for the answers.
///
/// Threading: any.
class RemoteTester final : public sandbox::Tester {
 public:
  explicit RemoteTester(HttpClient provider) : provider_(std::move(provider)) {}

  std::string plantInstrument(const sandbox::CardFields& card) override;
  std::string makeScene(const std::string& name) override;
  std::string arm(const sandbox::Fault& fault) override;
  std::vector<sandbox::Fault> armed() override;
  std::vector<sandbox::Firing> firings() override;
  void clearFaults() override;

 private:
  ClientAnswer ask(const std::string& method, const std::string& name, Json body = {}) const;
  template <class Read>
  auto told(const std::string& name, Read read) const;

  const HttpClient provider_;
};

}  // namespace hlv::services
