// Why a service elsewhere did not do what was asked.
#pragma once

#include <stdexcept>

namespace hlv::client {

/// One plain sentence: the service's own, or that of the transport.
class ClientError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace hlv::client
