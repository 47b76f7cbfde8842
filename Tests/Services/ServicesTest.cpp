#include "Tests/Services/ServicesTest.h"

#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Platform/Default/DefaultPlatform.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"

namespace hlv::services {

ServicesTest::~ServicesTest() {
  manager_.reset(), remote.reset(), local.reset();
  endServices();
}

void ServicesTest::serve() {
  sandbox::SandboxOptions options;
  options.storePath = storePath();
  auto opened = sandbox::Sandbox::open(options);
  ASSERT_TRUE(opened.sandbox) << opened.problem;
  sandbox = opened.sandbox;
  reopen();
}

void ServicesTest::reopen(ServiceLimits limits) {
  services.reset();
  ServicesOptions options;
  options.listening.limits = limits;
  auto opened = Services::open(sandbox, options);
  ASSERT_TRUE(opened.services) << opened.problem;
  services = std::move(opened.services);
}

void ServicesTest::reopenImpatiently() {
  ServiceLimits limits;
  limits.answerTime = std::chrono::milliseconds(20);
  reopen(limits);
}

void ServicesTest::endServices() {
  services.reset();
  stop();
}

void ServicesTest::connect(const std::string& backendURL, const std::string& providerURL,
                           std::chrono::milliseconds patience) {
  sandbox::SandboxOptions options;
  options.storePath = path("local");
  local = sandbox::Sandbox::open(options).sandbox;
  auto opened = RemoteHost::open(local, {backendURL, providerURL, patience});
  ASSERT_TRUE(opened.host) << opened.problem;
  remote = opened.host;
  Host::install(remote);
  ASSERT_EQ(local->signIn(email), "");
  backend = HLVSDKAPIManager::manager();
  provider = PLVInAppClient::sharedInstance();
  provider->registerWithAPIKey("key");
  guest = HLVSDKGuest::currentGuest();
  manager_ = HLVSDKPaylevenPaymentInstrumentManager::initWithAPIManager(
      backend, provider, HLVSDKReachability::sharedReachability());
}

void ServicesTest::serveAndConnect() {
  serve();
  connect(services->backendURL(), services->providerURL());
  ASSERT_EQ(remote->signIn(email), nullptr);
}

void ServicesTest::settle() {
  const auto platform = DefaultPlatform::shared();
  platform->runUntil([&] { return remote->isQuiet() && platform->isIdle() && remote->isQuiet(); });
}

ServicesTest::Outcome ServicesTest::add(const sandbox::Typed& card, const std::string& useCase) {
  auto fields = card;
  fields.useCase = useCase;
  const auto entered = sandbox::EnteredCard::make(fields);
  return only<Outcome>([&](auto completion) {
    manager_->addPaymentInstrument(entered, sandbox::EnteredAddress::make({}), guest, completion);
  });
}

ServicesTest::Outcome ServicesTest::update(const NullableString& ID,
                                           sandbox::AddressFields address) {
  return only<Outcome>([&](auto completion) {
    manager_->updatePaymentInstrument(ID, sandbox::EnteredAddress::make(std::move(address)), guest,
                                      completion);
  });
}

ServicesTest::Outcome ServicesTest::remove(const NullableString& ID, const std::string& useCase) {
  const auto [owner, error] = only<sandbox::GuestAnswer>([&](auto completion) {
    manager_->deletePaymentInstrumentWithID(ID, useCase, guest, completion);
  });
  return {owner, nullptr, error};
}

bool ServicesTest::synchronize() {
  const auto synchronizer =
      HLVSDKPaylevenPaymentInstrumentsSynchronizer::initWithAPIManager(backend, provider);
  const auto [isDone, error] = only<std::tuple<bool, ErrorPtr>>([&](auto completion) {
    synchronizer->synchronizePaymentInstrumentsForGuest(guest, completion);
  });
  EXPECT_EQ(nameOf(error), "none");
  return isDone;
}

}  // namespace hlv::services
