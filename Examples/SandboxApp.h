// What both examples begin with: an app whose host is the sandbox, with a guest and the kit.
#pragma once

#include <cstdio>
#include <memory>

#include "KitConfiguration.h"
#include "Public/HLVSDKPaylevenKit.h"
#include "Sandbox/Sandbox.h"

/// Takes the store's path from the command line. Says why it cannot start, and returns null.
inline std::shared_ptr<hlv::sandbox::Sandbox> startApp(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s STORE\n", argv[0]);
    return nullptr;
  }
  // 1. Choose a host. A phone app installs the real one; here it is the sandbox.
  hlv::sandbox::SandboxOptions options;
  options.storePath = argv[1];
  const auto opened = hlv::sandbox::Sandbox::open(options);
  if (!opened.sandbox) {
    std::fprintf(stderr, "%s\n", opened.problem.c_str());
    return nullptr;
  }
  hlv::Host::install(opened.sandbox->host());
  opened.sandbox->signIn("guest@example.com");

  // 2. Enable the kit, once.
  hlv::HLVSDKPayleven::enableWithConfiguration(
      std::make_shared<HostConfiguration>("a-payment-key"));
  return opened.sandbox;
}
