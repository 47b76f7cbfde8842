// The sandboxes of a server elsewhere, and one for a test.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Client/ClientError.h"
#include "Client/RemoteHost.h"
#include "Sandbox/Records/SandboxDescription.h"

namespace hlv::client {

using sandbox::NewSandbox;
using sandbox::SandboxDescription;
using sandbox::SnapshotDescription;

class HttpClient;

/// Creates sandboxes and controls them by their ids; "default" is the server's own. Every member
/// waits for the reply, and throws `ClientError` when it cannot do what it says.
///
/// Threading: any.
class SandboxClient {
 public:
  /// The URL of the provider, of the server or of one of its sandboxes.
  explicit SandboxClient(const std::string& providerURL);

  /// The sandbox that the URL names; "default" for the server's.
  const std::string& id() const { return id_; }

  SandboxDescription create(const NewSandbox& options = {}) const;
  std::vector<SandboxDescription> list() const;
  SandboxDescription describe(const std::string& id) const;
  void remove(const std::string& id) const;
  /// Returns what is left.
  SandboxDescription reset(const std::string& id) const;

  SnapshotDescription snapshot(const std::string& id) const;
  SandboxDescription restore(const std::string& id, const std::string& snapshot) const;
  std::vector<SnapshotDescription> snapshots() const;
  void removeSnapshot(const std::string& snapshot) const;

  // Times are in ISO 8601; a clock moves forwards only.

  std::string clock(const std::string& id) const;
  std::string setClock(const std::string& id, const std::string& time) const;
  std::string advanceClock(const std::string& id, std::int64_t seconds) const;

 private:
  std::string id_ = "default";
  std::shared_ptr<const HttpClient> control_;
};

/// A sandbox of a test's own, and a host that uses it:
///
///     const auto sandbox = hlv::client::TestSandbox::create("http://127.0.0.1:8082");
///     sandbox.signIn("guest@example.com");
///     hlv::Host::install(sandbox.host());
///
/// The server deletes it when this object goes, or in an hour. The host's side leaves no file.
/// Members throw `ClientError`.
///
/// Threading: any; it is destroyed on another thread than its host's calls complete on.
class TestSandbox {
 public:
  [[nodiscard]] static TestSandbox create(const std::string& providerURL,
                                          const NewSandbox& options = {.secondsToLive = 3600,
                                                                       .isInMemory = true});
  ~TestSandbox();
  TestSandbox(TestSandbox&&) = default;
  TestSandbox& operator=(TestSandbox&&) = delete;

  const SandboxDescription& description() const { return description_; }
  const std::string& backendURL() const { return description_.backendURL; }
  const std::string& providerURL() const { return description_.providerURL; }
  const std::shared_ptr<RemoteHost>& host() const { return host_; }
  /// What stays on this side: who is signed in, the network, the journal.
  const std::shared_ptr<sandbox::Sandbox>& local() const { return local_; }

  /// At the backend and on this side.
  void signIn(const std::string& email) const;

 private:
  TestSandbox(std::shared_ptr<const SandboxClient> client, const NewSandbox& options);

  std::shared_ptr<const SandboxClient> client_;
  SandboxDescription description_;
  std::shared_ptr<sandbox::Sandbox> local_;
  std::shared_ptr<RemoteHost> host_;
};

}  // namespace hlv::client
