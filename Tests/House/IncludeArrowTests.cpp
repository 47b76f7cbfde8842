// The arrows between the folders: who may include whom.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

using Folders = std::set<std::string>;

// A folder may always include itself. `Platform/Default` is the body that `Platform` falls back on.
const std::map<std::string, Folders> allowed = {
    {"Platform", {}},
    {"Host", {"Platform"}},
    {"Matching", {"Host", "Platform"}},
    {"Models", {"Host", "Platform"}},
    {"Public/Managers", {"Models", "Matching", "Host", "Platform"}},
    {"Public", {"Public/Managers", "Models", "Matching", "Host", "Platform"}},
    {"Sandbox", {"Host", "Platform"}},
    {"Client", {"Sandbox", "Host", "Platform"}},
    {"Server/Http", {"Platform"}},
    {"Server/Api", {"Server/Http", "Public", "Sandbox", "Host", "Platform"}},
    {"Server/Console", {"Server/Api", "Server/Http", "Public", "Sandbox", "Host", "Platform"}},
    {"Server",
     {"Server/Console", "Server/Api", "Server/Http", "Public", "Sandbox", "Host", "Platform"}},
    {"Tools", {"Public", "Server", "Client", "Sandbox", "Host", "Platform"}},
    {"ObjC", {"Public", "Public/Managers", "Models", "Matching", "Host", "Platform"}},
    {"ObjC/Sandbox", {"ObjC", "Sandbox", "Host", "Platform"}},
    {"Examples", {"Public", "Sandbox", "Host", "Platform"}},
};

/// The folder of the table that a path lies in, or an empty string.
std::string folderOf(const std::string& path) {
  // The innermost folder of the table.
  for (auto end = path.rfind('/'); end != std::string::npos && end > 0;
       end = path.rfind('/', end - 1)) {
    if (auto folder = path.substr(0, end); allowed.contains(folder)) return folder;
  }
  return "";
}

/// The arrows of one file that the table does not have.
std::vector<std::string> strayArrows(const std::string& path, std::istream& source) {
  std::vector<std::string> strays;
  const auto from = folderOf(path);
  for (std::string line; std::getline(source, line);) {
    if (!line.starts_with("#include \"") && !line.starts_with("#import \"")) continue;
    const auto name = line.find('"') + 1;
    const auto included = line.substr(name, line.rfind('"') - name);
    if (included.find('/') == std::string::npos) continue;  // A neighbour in the same folder.
    const auto to = folderOf(included);
    if (to != from && !allowed.at(from).contains(to)) {
      strays.push_back(path + " includes " + included);
    }
  }
  return strays;
}

TEST(IncludeArrows, RunOnlyAsTheTableSays) {
  const fs::path root = HLV_SOURCE_DIR;
  int files = 0;
  for (const auto& [folder, targets] : allowed) {
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
      const auto extension = entry.path().extension();
      if (extension != ".h" && extension != ".cpp" && extension != ".mm") continue;
      ++files;
      std::ifstream source(entry.path());
      const auto path = fs::relative(entry.path(), root).generic_string();
      for (const auto& stray : strayArrows(path, source)) ADD_FAILURE() << stray;
    }
  }
  EXPECT_GT(files, 80) << "the folders were not found";
}

TEST(IncludeArrows, AnArrowUpwardsIsSeen) {
  std::istringstream source(
      "#include <vector>\n#include \"Host/Host.h\"\n#include \"Sandbox/Store/Store.h\"\n"
      "#import \"Unknown/File.h\"\n");
  EXPECT_EQ(strayArrows("Public/Managers/X.cpp", source),
            (std::vector<std::string>{"Public/Managers/X.cpp includes Sandbox/Store/Store.h",
                                      "Public/Managers/X.cpp includes Unknown/File.h"}));
}

// The kit links the standard library and the platform, whose own headers stay behind the default
// platform.
TEST(IncludeArrows, TheKitShowsNoLibrary) {
  for (const std::string folder : {"Platform", "Host", "Matching", "Models", "Public"}) {
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(HLV_SOURCE_DIR) / folder)) {
      const auto path = fs::relative(entry.path(), HLV_SOURCE_DIR).generic_string();
      if (!entry.is_regular_file() || path.starts_with("Platform/Default/")) continue;
      std::ifstream source(entry.path());
      for (std::string line; std::getline(source, line);) {
        const bool foreign =
            line.starts_with("#include <") && line.find_first_of("/.") != std::string::npos;
        EXPECT_FALSE(foreign) << path << ": " << line;
      }
    }
  }
}

}  // namespace
