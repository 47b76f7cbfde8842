// What the examples begin with: an app whose host is the sandbox, and the kit.
#pragma once

#include <cstdio>
#include <memory>

#include "Public/HLVSDKPaylevenKit.h"
#include "Sandbox/Sandbox.h"

/// Chooses the host. A phone app installs the real one; here it is the sandbox, whose store the
/// command line names. Says why it cannot, and returns null.
inline std::shared_ptr<hlv::sandbox::Sandbox> installSandbox(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s STORE\n", argv[0]);
    return nullptr;
  }
  hlv::sandbox::SandboxOptions options;
  options.storePath = argv[1];
  const auto opened = hlv::sandbox::Sandbox::open(options);
  if (!opened) {
    std::fprintf(stderr, "%s\n", opened.problem().c_str());
    return nullptr;
  }
  hlv::Host::install((*opened)->host());
  return *opened;
}

/// Enables the kit, once.
inline void enableKit() {
  const auto key = hlv::HLVSDKPaylevenKitConfiguration::configurationWithBlock(
      [](const auto& configuration) { configuration->setPaymentKey("a-payment-key"); });
  const auto entry = hlv::HLVSDKKitEntry::make(hlv::HLVSDKPayleven::kitClass(), key);
  hlv::HLVSDKPayleven::enableWithConfiguration(hlv::HLVSDKConfiguration::make({{entry}}));
}

/// Both, for a guest who is signed in from the start.
inline std::shared_ptr<hlv::sandbox::Sandbox> startApp(int argc, char** argv) {
  auto sandbox = installSandbox(argc, argv);
  if (!sandbox || !sandbox->signIn("guest@example.com")) return nullptr;
  enableKit();
  return sandbox;
}
