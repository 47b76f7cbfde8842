// The store that plays the host in this process.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include <map>
#include <memory>
#include <mutex>

#include "Sandbox/Sandbox.h"

namespace hlv::sandbox::objc {

/// Threading: any.
class OpenSandbox {
 public:
  explicit OpenSandbox(std::shared_ptr<Sandbox> sandbox) : sandbox_(std::move(sandbox)) {}
  ~OpenSandbox();
  OpenSandbox(const OpenSandbox&) = delete;
  OpenSandbox& operator=(const OpenSandbox&) = delete;

  /// The one that plays the host, or null.
  static std::shared_ptr<OpenSandbox> current();
  /// From now on `sandbox` plays the host, for as long as somebody keeps it.
  static void letPlay(const std::shared_ptr<OpenSandbox>& sandbox);

  Sandbox& sandbox() { return *sandbox_; }

  /// The same Objective-C object each time for the same guest. Lives as long as its pool.
  ::HLVSDKGuest* objectOf(const std::shared_ptr<HLVSDKGuest>& guest);

 private:
  const std::shared_ptr<Sandbox> sandbox_;
  std::mutex mutex_;
  /// Each object keeps its guest, so that no other guest takes its address.
  std::map<const HLVSDKGuest*, ::HLVSDKGuest*> guests_;
};

/// The host of the current one, or null.
std::shared_ptr<Host> openHost();

}  // namespace hlv::sandbox::objc
