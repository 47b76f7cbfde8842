#include "Sandbox/Host/SandboxHost.h"

namespace hlv::sandbox {

Parts::Parts(std::shared_ptr<Store> openedStore, LogSink remoteSink, LogSink consoleSink)
    : store(std::move(openedStore)),
      journal(std::make_shared<Journal>(store, "start")),
      reachability(std::make_shared<Reachability>(store)),
      answers(std::make_shared<ReplyQueue>()),
      guests(std::make_shared<Guests>(store)),
      backend(
          std::make_shared<BackendClient>(guests, Service::Surroundings{store, journal, answers})),
      provider(std::make_shared<ProviderClient>(Service::Surroundings{store, journal, answers})),
      remoteLog(std::make_shared<Logger>(std::move(remoteSink), journal)),
      consoleLog(std::make_shared<Logger>(std::move(consoleSink))) {}

}  // namespace hlv::sandbox
