// The commands on a guest's cards: add, update, delete, cards, instruments.
//
// Threading: the main thread.
#pragma once

namespace hlv::tool {

class CommandLine;

class CardCommands {
 public:
  static void define(CommandLine& line);
};

}  // namespace hlv::tool
