// Why a service elsewhere did not do what was asked.
#pragma once

#include "Values/Problem.h"

namespace hlv::client {

/// One plain sentence: the service's own, or that of the transport.
class ClientError : public Problem {
 public:
  using Problem::Problem;
};

}  // namespace hlv::client
