// The host that an app installs to run against the sandbox. Private to the sandbox.
#pragma once

#include <memory>

#include "Sandbox/Backend/BackendClient.h"
#include "Sandbox/Backend/Guest.h"
#include "Sandbox/Calls/Journal.h"
#include "Sandbox/Calls/Reachability.h"
#include "Sandbox/Calls/ReplyQueue.h"
#include "Sandbox/Host/DeviceHost.h"
#include "Sandbox/Logging/Logger.h"
#include "Sandbox/Provider/ProviderClient.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {

/// Everything that runs on one store.
///
/// Threading: any.
struct Parts {
  Parts(std::shared_ptr<Store> openedStore, LogSink remoteSink, LogSink consoleSink);

  const std::shared_ptr<Store> store;
  const std::shared_ptr<Journal> journal;
  const std::shared_ptr<Reachability> reachability;
  const std::shared_ptr<ReplyQueue> answers;
  const std::shared_ptr<Guests> guests;
  const std::shared_ptr<BackendClient> backend;
  const std::shared_ptr<ProviderClient> provider;
  const std::shared_ptr<Logger> remoteLog;
  const std::shared_ptr<Logger> consoleLog;
};

/// Threading: any.
class SandboxHost final : public DeviceHost {
 public:
  explicit SandboxHost(std::shared_ptr<Parts> parts) : DeviceHost(std::move(parts)) {}

  std::shared_ptr<HLVSDKAPIManager> apiManager() override { return parts_->backend; }
  std::shared_ptr<HLVSDKGuest> currentGuest() override { return parts_->guests->signedIn(); }
  std::shared_ptr<PLVInAppClient> inAppClient() override { return parts_->provider; }
};

}  // namespace hlv::sandbox
