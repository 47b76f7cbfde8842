// The commands that describe the command: manual and completion.
//
// Threading: the main thread.
#pragma once

namespace hlv::tool {

class CommandLine;

void defineDocumentCommands(CommandLine& line);

}  // namespace hlv::tool
