// The commands for what a tester does: orphan, fault, trace, reset.
//
// Threading: the main thread.
#pragma once

namespace hlv::tool {

class CommandLine;

class TesterCommands {
 public:
  static void define(CommandLine& line);
};

}  // namespace hlv::tool
