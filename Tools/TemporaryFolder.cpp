#include "Tools/TemporaryFolder.h"

#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include "Tools/EndingHandler.h"
#include "Tools/StoreFiles.h"
#include "Values/Problem.h"

namespace hlv::tool {
namespace {

// A signal handler may not allocate. The folder comes last.
std::array<std::array<char, PATH_MAX>, storeSuffixes.size() + 1> whatToRemove;
EndingHandler endingHandler;

extern "C" void removeFolderAndEnd(int signal) {
  for (const auto& path : whatToRemove) {
    if (::unlink(path.data()) != 0) ::rmdir(path.data());
  }
  ::signal(signal, SIG_DFL);
  sigset_t itself;
  ::sigemptyset(&itself);
  ::sigaddset(&itself, signal);
  ::raise(signal);
  // Now, before another thread writes to the store again.
  ::pthread_sigmask(SIG_UNBLOCK, &itself, nullptr);
}

}  // namespace

TemporaryFolder::TemporaryFolder()
    : path_((std::filesystem::temp_directory_path() / "paylevenkit-XXXXXX").string()) {
  if (path_.size() + 32 > PATH_MAX || !::mkdtemp(path_.data())) {
    throw Problem("No folder for temporary files can be made.");
  }
  std::size_t next = 0;
  for (const char* suffix : storeSuffixes) {
    const auto file = storePath() + suffix;
    file.copy(whatToRemove[next++].data(), file.size());
  }
  path_.copy(whatToRemove[next].data(), path_.size());
  endingHandler.install(removeFolderAndEnd);
}

TemporaryFolder::~TemporaryFolder() {
  if (path_.empty()) return;
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
  keep();
}

std::string TemporaryFolder::storePath() const { return path_ + "/store.sqlite"; }

void TemporaryFolder::keep() {
  path_.clear();
  endingHandler.restore();
}

}  // namespace hlv::tool
