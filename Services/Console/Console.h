// The console of `paylevenkit serve`: a page that drives an app with a real kit, tells the story of
// each operation, and shows both sides.
#pragma once

#include <memory>
#include <string>

#include "Sandbox/Sandbox.h"
#include "Services/Listening.h"

namespace hlv::services {

/// Threading: any, but for `look`, and for the destructor, which waits for the requests that are
/// under way. Installs the sandbox as the host of the process.
class Console {
 public:
  struct Opened {
    /// Null when it cannot be opened.
    std::unique_ptr<Console> console;
    /// One plain sentence when it cannot.
    std::string problem;
  };

  /// Port 0 is the one that the store's last console had, or any free one.
  static Opened open(std::shared_ptr<sandbox::Sandbox> sandbox, const Listening& listening,
                     int port);
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  /// Such as "http://127.0.0.1:8080".
  std::string url() const;
  /// To be called on the main thread after each turn of the main queue.
  void look();

 private:
  struct Parts;
  explicit Console(std::unique_ptr<Parts> parts);

  const std::unique_ptr<Parts> parts_;
};

}  // namespace hlv::services
