// The host that an app installs to run against the sandbox. Private to the sandbox.
#pragma once

#include <memory>
#include <utility>

#include "Sandbox/Backend/BackendClient.h"
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
  Parts(std::shared_ptr<Store> openedStore, LogSink remoteSink, LogSink consoleSink)
      : store(std::move(openedStore)),
        remoteLog(std::make_shared<Logger>(std::move(remoteSink), journal)),
        consoleLog(std::make_shared<Logger>(std::move(consoleSink))) {}

  const std::shared_ptr<Store> store;
  const std::shared_ptr<Journal> journal = std::make_shared<Journal>(store, "start");
  const std::shared_ptr<Reachability> reachability = std::make_shared<Reachability>(store);
  const std::shared_ptr<ReplyQueue> answers = std::make_shared<ReplyQueue>();
  const Service::Surroundings surroundings{store, journal, answers};
  const std::shared_ptr<Guests> guests = std::make_shared<Guests>(store);
  const std::shared_ptr<HLVSDKAPIManager> backend = makeBackendClient(guests, surroundings);
  const std::shared_ptr<PLVInAppClient> provider = makeProviderClient(surroundings);
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
