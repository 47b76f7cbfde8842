// The life of a guest's cards, from the first sign-in to two sides that agree.
//
// Threading: the main thread.
#pragma once

namespace hlv::tool {

class CommandLine;

class Demo {
 public:
  static void define(CommandLine& line);
};

}  // namespace hlv::tool
