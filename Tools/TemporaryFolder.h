// A folder for a store that nobody wants to keep.
//
// Threading: the main thread; one at a time.
#pragma once

#include <string>

namespace hlv::tool {

/// Goes away with this object, with everything in it, and also when Ctrl-C or another signal ends
/// the process.
class TemporaryFolder {
 public:
  /// Throws Problem when none can be made.
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string storePath() const;
  /// It stays.
  void keep();

 private:
  std::string path_;
};

}  // namespace hlv::tool
