// The sandbox's backend and provider over HTTP, for programs in other processes.
#pragma once

#include <memory>
#include <string>

#include "Sandbox/Sandbox.h"
#include "Services/Listening.h"

namespace hlv::services {

struct ServicesOptions {
  Listening listening;
  /// 0 is the port that the store's last service had, or any free one.
  int backendPort = 0;
  int providerPort = 0;
};

/// Two doors to one sandbox. Delayed answers need the main queue to be pumped, as they do embedded.
///
/// Threading: any, but for the destructor: it ends both services and waits for the requests that
/// are under way, which get no answer.
class Services {
 public:
  struct Opened {
    /// Null when the services cannot be opened.
    std::unique_ptr<Services> services;
    /// One plain sentence when they cannot.
    std::string problem;
  };

  static Opened open(std::shared_ptr<sandbox::Sandbox> sandbox, const ServicesOptions& options);
  ~Services();
  Services(const Services&) = delete;
  Services& operator=(const Services&) = delete;

  /// Such as "http://127.0.0.1:8080".
  std::string backendURL() const;
  std::string providerURL() const;

 private:
  struct Parts;
  explicit Services(std::unique_ptr<Parts> parts);

  const std::unique_ptr<Parts> parts_;
};

}  // namespace hlv::services
