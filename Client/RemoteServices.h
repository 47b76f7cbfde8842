// The host's clients of a backend and a provider in other processes. Private to this folder.
#pragma once

#include <memory>

#include "Client/RemoteGuest.h"
#include "Client/RemoteService.h"
#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"

namespace hlv::client {

/// `local` knows who is signed in on this side.
std::shared_ptr<HLVSDKAPIManager> remoteBackend(RemoteService service,
                                                std::shared_ptr<sandbox::Sandbox> local,
                                                std::shared_ptr<const RemoteSession> session,
                                                std::shared_ptr<RemoteGuests> guests);
std::shared_ptr<PLVInAppClient> remoteProvider(RemoteService service);

}  // namespace hlv::client
