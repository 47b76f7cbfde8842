// The results of a call that failed. Private to the sandbox, server and client.
#pragma once

#include <cstddef>
#include <tuple>
#include <utility>

#include "Values/Error.h"

namespace hlv::sandbox {

/// Nothing but the error, which every completion takes last.
template <class... Results>
std::tuple<Results...> failed(ErrorPtr error) {
  std::tuple<Results...> results;
  std::get<sizeof...(Results) - 1>(results) = std::move(error);
  return results;
}

}  // namespace hlv::sandbox
