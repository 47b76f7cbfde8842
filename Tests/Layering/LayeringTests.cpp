// Who may include whom: ARCHITECTURE.md's table of folders, held against every source.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

using Folders = std::set<std::string>;
/// What a folder may include besides itself. A folder without a row belongs to the one it lies in.
using Table = std::map<std::string, Folders>;

std::string contentOf(const fs::path& path) {
  std::ostringstream content;
  content << std::ifstream(path).rdbuf();
  return content.str();
}

std::vector<std::string> matchesIn(const std::string& text, const std::regex& pattern) {
  std::vector<std::string> matches;
  for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
    matches.push_back((*match)[1]);
  }
  return matches;
}

Table tableIn(std::istream& document) {
  static const std::regex code("`([^`]+)`");
  static const std::regex folder("([A-Za-z/]+)");
  Table table;
  bool isInside = false;
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with("| folder |")) isInside = true;
    if (!line.starts_with("| `")) {
      if (!line.starts_with("|")) isInside = false;
      continue;
    }
    if (!isInside) continue;
    const auto description = line.find(" | ") + 3;
    const auto cell = line.find(" | ", description);
    for (auto row : matchesIn(line.substr(0, description), code)) {
      if (row.ends_with('/')) row.pop_back();
      for (const auto& targets : matchesIn(line.substr(cell), code)) {
        for (const auto& target : matchesIn(targets, folder)) table[row].insert(target);
      }
      table[row];
    }
  }
  return table;
}

/// The innermost folder of the table that a path lies in, or an empty string.
std::string folderOf(const Table& table, const std::string& path) {
  for (auto end = path.rfind('/'); end != std::string::npos && end > 0;
       end = path.rfind('/', end - 1)) {
    if (auto folder = path.substr(0, end); table.contains(folder)) return folder;
  }
  return "";
}

/// Where a header may be included that says whose it is; empty for everywhere.
std::string ownerOf(const std::string& path, const std::string& content) {
  static const std::regex claim("Private to ([a-z, ]+)");
  std::smatch match;
  static const std::regex lineBreak("\n// ");
  const auto beginning =
      std::regex_replace(content.substr(0, content.find("#pragma once")), lineBreak, " ");
  if (!std::regex_search(beginning, match, claim)) return "";
  const std::map<std::string, std::string> owners = {
      {"the sandbox", "Sandbox/"},
      {"the sandbox and the server", "Sandbox/ Server/"},
      {"the sandbox, server and client", "Sandbox/ Server/ Client/"},
      {"the sandbox of both languages", "Sandbox/ ObjC/Sandbox/"},
      {"the server", "Server/"},
      {"the listener", "Server/Http/"},
      {"this folder", path.substr(0, path.rfind('/') + 1)}};
  const auto owner = owners.find(match[1]);
  return owner == owners.end() ? "nobody that is known" : owner->second;
}

/// The arrows of one source that the table does not have, and those to another folder's own
/// headers.
std::vector<std::string> strayArrows(const Table& table,
                                     const std::map<std::string, std::string>& owners,
                                     const std::string& path, const std::string& content) {
  static const std::regex arrow("(?:^|\n)[ \t]*#[ \t]*(?:include|import)[ \t]*\"([^\"]+/[^\"]+)\"");
  std::vector<std::string> strays;
  const auto from = folderOf(table, path);
  for (const auto& included : matchesIn(content, arrow)) {
    const auto to = folderOf(table, included);
    const auto owner = owners.find(included);
    const bool isAllowed = to == from || (!to.empty() && table.at(from).contains(to));
    bool isOwn = owner == owners.end();
    if (!isOwn) {
      std::istringstream places(owner->second);
      for (std::string place; places >> place;) isOwn = isOwn || path.starts_with(place);
    }
    if (!isAllowed || !isOwn) strays.push_back(path + " includes " + included);
  }
  return strays;
}

class Layering : public ::testing::Test {
 protected:
  Layering() {
    std::ifstream document(root_ / "ARCHITECTURE.md");
    table_ = tableIn(document);
    for (const auto& entry : fs::recursive_directory_iterator(root_)) {
      const auto path = fs::relative(entry.path(), root_).generic_string();
      const auto extension = entry.path().extension();
      const bool isSource =
          extension == ".h" || extension == ".cpp" || extension == ".mm" || extension == ".m";
      if (!isSource || path.starts_with("build/") || path.starts_with("Tests/")) continue;
      const auto& content = sources_[path] = contentOf(entry.path());
      if (auto owner = ownerOf(path, content); !owner.empty()) owners_[path] = owner;
    }
  }

  const fs::path root_ = HLV_SOURCE_DIR;
  Table table_;
  std::map<std::string, std::string> sources_, owners_;
};

TEST_F(Layering, IsAsTheTableSays) {
  EXPECT_GT(sources_.size(), 200U);
  EXPECT_GT(owners_.size(), 50U);
  for (const auto& [path, content] : sources_) {
    EXPECT_NE(folderOf(table_, path), "") << path << " lies in no folder of the table";
    for (const auto& stray : strayArrows(table_, owners_, path, content)) ADD_FAILURE() << stray;
  }
}

TEST_F(Layering, HasNoCircleOfFolders) {
  // Folders whose own arrows all end at folders that went before go, until none is left.
  auto left = table_;
  for (bool goesOn = true; goesOn;) {
    goesOn = std::erase_if(left, [&](const auto& row) {
               return std::none_of(row.second.begin(), row.second.end(), [&](const auto& target) {
                 return target != row.first && left.contains(target);
               });
             }) > 0;
  }
  for (const auto& [folder, targets] : left) ADD_FAILURE() << folder << " is in a circle";
}

TEST_F(Layering, SeesArrowsThatTheTableDoesNotHave) {
  const std::pair<std::string, std::string> forbidden[] = {
      {"Sandbox/Backend/Backend.cpp", "#include \"Sandbox/Provider/Provider.h\"\n"},
      {"Server/Http/Connection.cpp", "#include <map>\n#include \"Client/RemoteHost.h\"\n"},
      {"ObjC/HLVSDKPaylevenKit/HLVSDKPayleven.h", "#import \"Public/HLVSDKPayleven.h\"\n"},
      {"ObjC/Classes/Cores.h", "  # import \"ObjC/Sandbox/OpenSandbox.h\"\n"},
      {"Tools/main.cpp", "#include \"Server/Api/World.h\"\n"},
      {"Public/HLVSDKPayleven.cpp", "#include \"Unknown/File.h\"\n"}};
  for (const auto& [path, content] : forbidden) {
    EXPECT_EQ(strayArrows(table_, owners_, path, content).size(), 1U) << path;
  }
}

// The kit links the standard library and the platform, whose own headers stay behind the default
// platform.
TEST_F(Layering, TheKitShowsNoLibrary) {
  static const std::regex foreign("(?:^|\n)#include <([^>]*[/.][^>]*)>");
  for (const auto& [path, content] : sources_) {
    static const std::regex kit("(Values|Async|Platform|Host|Matching|Models|Public)/.*");
    if (!std::regex_match(path, kit) || path.starts_with("Platform/Default/")) continue;
    for (const auto& header : matchesIn(content, foreign)) ADD_FAILURE() << path << ": " << header;
  }
}

}  // namespace
