// A folder of a test's own, which goes away with it.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>

namespace hlv::testing {

class TestFolder {
 public:
  TestFolder() {
    auto name = (std::filesystem::temp_directory_path() / "paylevenkit-test-XXXXXX").string();
    if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// Of what is no file, nothing.
inline std::string contentOf(const std::filesystem::path& path) {
  if (!std::filesystem::is_regular_file(path)) return "";
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace hlv::testing
