// The command that offers the sandbox's services to other processes: serve.
//
// Threading: the main thread.
#pragma once

namespace hlv::tool {

class CommandLine;

class ServeCommand {
 public:
  static void define(CommandLine& line);
};

}  // namespace hlv::tool
