// The commands for the sandboxes of a server elsewhere.
//
// Threading: the main thread.
#pragma once

namespace hlv::tool {

class CommandLine;

void defineSandboxCommands(CommandLine& line);

}  // namespace hlv::tool
