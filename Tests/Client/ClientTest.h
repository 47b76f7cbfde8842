// A host whose services are elsewhere, over the test's sandbox on this side.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "Client/RemoteHost.h"
#include "Tests/Client/CannedServer.h"
#include "Tests/Sandbox/SandboxTest.h"

namespace hlv::client {

using sandbox::nameOf;
using testing::CannedServer;
using Then = CannedServer::Then;

class ClientTest : public sandbox::SandboxTest {
 protected:
  ClientTest() { start(); }

  /// The services are a host's at these places, whose guest is signed in on this side.
  void connect(const std::string& backendURL, const std::string& providerURL,
               std::chrono::milliseconds timeout = std::chrono::seconds(30)) {
    remote = RemoteHost::open(sandbox, {backendURL, providerURL, timeout});
    use(remote);
    guest = remote->currentGuest();
  }
  void connect(const CannedServer& server) { connect(server.url(), server.url()); }
  bool isQuiet() const override { return remote->isQuiet(); }

  std::shared_ptr<RemoteHost> remote;
};

}  // namespace hlv::client
