// The command paylevenkit.
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <iostream>

#include "Tools/CommandLine.h"

namespace {

/// A standard stream that is closed would be opened again as some file of the store's.
void holdStandardStreams() {
  // What is written to one that is only read fails, as it would to a closed one.
  while (true) {
    const int held = ::open("/dev/null", O_RDONLY);
    if (held < 0) return;
    if (held > STDERR_FILENO) {
      ::close(held);
      return;
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  holdStandardStreams();
  // A reader that has left shows when the output cannot be written.
  ::signal(SIGPIPE, SIG_IGN);
  try {
    return hlv::sandbox::tool::CommandLine().run(argc, argv);
  } catch (...) {
    std::cerr << "paylevenkit: Something unexpected went wrong; what was answered is stored.\n";
    return 2;
  }
}
