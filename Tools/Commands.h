// The groups of commands; each adds its own to the command line.
//
// Threading: the main thread.
#pragma once

namespace hlv::tool {

class CommandLine;

/// What a guest and an app do: sign-in, sign-out, network, foreground, sync.
void defineGuestCommands(CommandLine& line);
/// What is done with a guest's cards: add, update, delete, cards, instruments.
void defineCardCommands(CommandLine& line);
/// What a tester does: orphan, scenario, fault, trace, reset.
void defineTesterCommands(CommandLine& line);
/// serve: the sandbox's services for other processes.
void defineServeCommand(CommandLine& line);
/// The sandboxes of a server elsewhere.
void defineSandboxCommands(CommandLine& line);
/// demo: the life of a guest's cards, from the first sign-in to two sides that agree.
void defineDemoCommand(CommandLine& line);
/// What describes the command: manual and completion.
void defineDocumentCommands(CommandLine& line);

}  // namespace hlv::tool
