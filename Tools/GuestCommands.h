// The commands for what a guest and an app do: sign-in, sign-out, network, foreground, sync.
//
// Threading: the main thread.
#pragma once

namespace hlv::tool {

class CommandLine;

class GuestCommands {
 public:
  static void define(CommandLine& line);
};

}  // namespace hlv::tool
