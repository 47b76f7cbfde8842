// The command paylevenkit.
#include <iostream>

#include "Tools/CommandLine.h"

int main(int argc, char** argv) {
  try {
    return hlv::tool::CommandLine().run(argc, argv);
  } catch (...) {
    std::cerr << "paylevenkit: Something unexpected went wrong; what was answered is stored.\n";
    return 2;
  }
}
