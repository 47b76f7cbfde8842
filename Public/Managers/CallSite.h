// Where a log line is written and an error is built.
//
// Threading: plain values; any thread.
#pragma once

#include <string>

#include "Async/Deliver.h"

namespace hlv {

/// The name of a function as log lines and errors carry it: `method` is the method's full name,
/// such as "-[Class firstPart:secondPart:]"; `block` counts its blocks from 1, and 0 is the method
/// itself.
inline std::string functionName(const char* method, int block) {
  std::string name = method;
  if (block > 0) name += "_block_invoke";
  if (block > 1) name.append("_").append(std::to_string(block));
  return name;
}

/// The name of the function that builds the results of a delivery: the delivering one, or the block
/// that it posts. `block` is the delivering one's own number.
inline std::string functionName(const char* method, Delivery delivery, int block = 0) {
  return functionName(method, delivery == Delivery::posted ? block + 1 : block);
}

/// A place in the source. `path` comes from the compiler and lives forever.
struct CallSite {
  const char* path;
  int line;
  std::string function;
};

}  // namespace hlv

/// The place where it is written, in the function of the given name.
#define HLV_HERE(function) \
  ::hlv::CallSite { __FILE__, __LINE__, function }
