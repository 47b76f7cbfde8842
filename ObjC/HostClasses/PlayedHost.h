// The host that the host SDK's and the provider's classes stand for in this process.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "Host/Host.h"

namespace hlv::host_classes {

/// Threading: any.
class PlayedHost {
 public:
  explicit PlayedHost(std::shared_ptr<Host> host) : host_(std::move(host)) {}
  ~PlayedHost();
  PlayedHost(const PlayedHost&) = delete;
  PlayedHost& operator=(const PlayedHost&) = delete;

  /// The one that the classes stand for, or null.
  static std::shared_ptr<PlayedHost> current();
  /// From now on the classes stand for `host`, for as long as somebody keeps it.
  static void install(const std::shared_ptr<PlayedHost>& host);

  const std::shared_ptr<Host>& host() const { return host_; }

  /// The same Objective-C object each time for the same guest. Lives as long as its pool.
  ::HLVSDKGuest* objectOf(const std::shared_ptr<HLVSDKGuest>& guest);

 private:
  const std::shared_ptr<Host> host_;
  std::mutex mutex_;
  /// Each object keeps its guest, so that no other guest takes its address.
  std::map<const HLVSDKGuest*, ::HLVSDKGuest*> guests_;
};

/// The host of the current one, or null.
std::shared_ptr<Host> playedHost();

}  // namespace hlv::host_classes
