// The sandbox's backend and provider over HTTP, for programs in other processes, with as many
// sandboxes as they need, control of them, and a console.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Server/Http/ListenOptions.h"
#include "Values/Result.h"

namespace hlv::sandbox::server {

struct ServerOptions {
  /// The default sandbox; created, readable by its owner only, when it is not there. The others lie
  /// beside it.
  std::string storePath;
  /// Of a new store.
  std::optional<std::uint64_t> seed;
  /// For all three listeners; its port does not count.
  ListenOptions listening;
  /// 0 is the port that the store's last server had, or any free one.
  int backendPort = 0;
  int providerPort = 0;
  int consolePort = 0;
  /// 0 is one for each core.
  unsigned loops = 0;
  /// Where clients reach the listeners, where that is not where they listen; empty otherwise.
  std::string backendURL;
  std::string providerURL;
  std::string consoleURL;
};

/// One server at a time works on a store.
///
/// Threading: any, but for `completeFinishedOperations`, and for the destructor: it runs on no
/// thread of the server's and ends within a second; requests that are held get no reply. While the
/// console is used, its app is the host of the process, and needs the main queue to be pumped.
class Server {
 public:
  /// Nothing is changed where it cannot be opened, but for a new store.
  static Result<std::unique_ptr<Server>> open(ServerOptions options);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  /// Such as "http://127.0.0.1:8080".
  const std::string& backendURL() const;
  const std::string& providerURL() const;
  const std::string& consoleURL() const;

  /// Replies to the console whose operation has come to its end. To be called on the main thread
  /// after each pass of the main queue.
  void completeFinishedOperations();

 private:
  struct Parts;
  explicit Server(std::unique_ptr<Parts> parts);

  const std::unique_ptr<Parts> parts_;
};

}  // namespace hlv::sandbox::server
