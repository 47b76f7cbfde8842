// A host whose services are elsewhere, and what its calls bring.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "Client/RemoteHost.h"
#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Host/PaylevenFramework/PLVPaymentInstrument.h"
#include "Tests/Client/CannedServer.h"

namespace hlv::client {

using testing::CannedServer;
using Then = CannedServer::Then;

inline std::string nameOf(const ErrorPtr& error) {
  return error ? error->domain() + " " + std::to_string(error->code()) : "none";
}

class ClientTest : public ::testing::Test {
 protected:
  using Cards = std::tuple<NullableList<HLVSDKCreditCard>, ErrorPtr>;
  using Instruments = std::tuple<NullableList<PLVCreditCardPaymentInstrument>, ErrorPtr>;

  inline static const std::string email = "guest@example.com";

  ClientTest();
  ~ClientTest() override;

  /// A host at these places, over the test's local store, with the guest signed in on this side.
  void connect(const std::string& backendURL, const std::string& providerURL,
               std::chrono::milliseconds timeout = std::chrono::seconds(30));
  void connect(const CannedServer& server) { connect(server.url(), server.url()); }
  void settle();
  /// What a call brings, which is made with a completion that takes what `Results` holds.
  template <class Results>
  Results only(const auto& call) {
    const auto all = std::make_shared<std::vector<Results>>();
    call([all](auto... results) { all->emplace_back(std::move(results)...); });
    settle();
    EXPECT_EQ(all->size(), 1U);
    return all->empty() ? Results() : all->front();
  }
  Cards fetchCards();
  Instruments listInstruments();
  ErrorPtr addInstrument();

  std::shared_ptr<sandbox::Sandbox> local;
  std::shared_ptr<RemoteHost> remote;

 private:
  std::filesystem::path folder_;
};

}  // namespace hlv::client
