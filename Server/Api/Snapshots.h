// The snapshots of a server's sandboxes. Private to the server.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Sandbox/Records/SandboxDescription.h"
#include "Sandbox/Store/Store.h"

namespace hlv::server {

/// Each is a store in a file of its own, and a row of the registry's.
///
/// Threading: any; members wait for the disk. They throw `HttpError` for a snapshot that is none,
/// and `StoreFailure`.
class Snapshots {
 public:
  /// `folder` is made where there is none.
  Snapshots(std::string folder, std::shared_ptr<sandbox::Store> registry);

  sandbox::SnapshotDescription take(const std::string& sandbox, sandbox::Store& store) const;
  std::vector<sandbox::SnapshotDescription> list() const;
  void remove(const std::string& snapshot) const;
  /// Of its store.
  std::string pathOf(const std::string& snapshot) const;

 private:
  std::string fileOf(const std::string& snapshot) const;

  const std::string folder_;
  const std::shared_ptr<sandbox::Store> registry_;
};

}  // namespace hlv::server
