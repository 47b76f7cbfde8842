// Who may include whom: ARCHITECTURE.md's table of folders, held against every source. And which
// words stand for what: CONTRIBUTING.md's table of words, held against every text.
#include <gtest/gtest.h>

#include <algorithm>
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
/// What a folder may include besides itself. A folder without a row belongs to the one it lies in.
using Table = std::map<std::string, Folders>;

/// The words between backquotes.
std::vector<std::string> wordsIn(const std::string& cell) {
  std::vector<std::string> words;
  std::istringstream pieces(cell);
  bool isCode = false;
  for (std::string piece; std::getline(pieces, piece, '`'); isCode = !isCode) {
    std::istringstream code(isCode ? piece : "");
    for (std::string word; code >> word;) words.push_back(word);
  }
  return words;
}

Table tableIn(std::istream& document) {
  Table table;
  bool isInside = false;
  for (std::string line; std::getline(document, line);) {
    isInside = line.starts_with("| folder |") || (isInside && line.starts_with("|"));
    if (!isInside || !line.starts_with("| `")) continue;
    const auto description = line.find(" | ") + 3;
    const auto targets = wordsIn(line.substr(line.find(" | ", description)));
    for (auto row : wordsIn(line.substr(0, description))) {
      table[row.substr(0, row.size() - 1)].insert(targets.begin(), targets.end());
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

/// The headers that a source includes or imports between these marks.
std::vector<std::string> includesIn(const std::string& content, char opening, char closing) {
  std::vector<std::string> headers;
  std::istringstream lines(content);
  for (std::string line; std::getline(lines, line);) {
    line.erase(std::remove(line.begin(), line.end(), ' '), line.end());
    if (!line.starts_with(std::string("#include") + opening) &&
        !line.starts_with(std::string("#import") + opening)) {
      continue;
    }
    const auto begin = line.find(opening) + 1;
    headers.push_back(line.substr(begin, line.find(closing, begin) - begin));
  }
  return headers;
}

/// Where a header may be included that says whose it is; none for everywhere.
std::vector<std::string> ownersOf(const std::string& path, const std::string& content) {
  const std::string claim = "Private to ";
  auto comment = content.substr(0, content.find("#pragma once"));
  for (auto at = comment.find("\n// "); at != std::string::npos; at = comment.find("\n// ")) {
    comment.replace(at, 4, " ");
  }
  const auto begin = comment.find(claim);
  if (begin == std::string::npos) return {};
  const auto owner =
      comment.substr(begin + claim.size(), comment.find('.', begin) - begin - claim.size());
  const std::map<std::string, std::vector<std::string>> known = {
      {"the sandbox", {"Sandbox/"}},
      {"the sandbox and the server", {"Sandbox/", "Server/"}},
      {"the sandbox, server and client", {"Sandbox/", "Server/", "Client/"}},
      {"the sandbox of both languages", {"Sandbox/", "ObjC/Sandbox/"}},
      {"the server", {"Server/"}},
      {"the listener", {"Server/Http/"}},
      {"the binding", {"ObjC/"}},
      {"this folder", {path.substr(0, path.rfind('/') + 1)}}};
  const auto found = known.find(owner);
  return found == known.end() ? std::vector<std::string>{"nobody that is known"} : found->second;
}

struct Tree {
  Table table;
  std::map<std::string, std::string> sources;
  std::map<std::string, std::vector<std::string>> owners;
};

const Tree& tree() {
  static const auto& read = *new Tree([] {
    Tree tree;
    const fs::path root = HLV_SOURCE_DIR;
    std::ifstream document(root / "ARCHITECTURE.md");
    tree.table = tableIn(document);
    for (const auto& top : fs::directory_iterator(root)) {
      const auto name = top.path().filename().string();
      if (!top.is_directory() || name == "build" || name == "Tests" || name[0] == '.') continue;
      for (const auto& entry : fs::recursive_directory_iterator(top.path())) {
        const auto extension = entry.path().extension();
        if (extension != ".h" && extension != ".cpp" && extension != ".mm" && extension != ".m") {
          continue;
        }
        std::ostringstream content;
        content << std::ifstream(entry.path()).rdbuf();
        const auto path = fs::relative(entry.path(), root).generic_string();
        auto owners = ownersOf(path, content.str());
        if (!owners.empty()) tree.owners[path] = std::move(owners);
        tree.sources[path] = content.str();
      }
    }
    return tree;
  }());
  return read;
}

/// The arrows of one source that the table does not have, and those to another folder's own
/// headers.
std::vector<std::string> strayArrows(const std::string& path, const std::string& content) {
  std::vector<std::string> strays;
  const auto from = folderOf(tree().table, path);
  for (const auto& included : includesIn(content, '"', '"')) {
    if (included.find('/') == std::string::npos) continue;  // A neighbour in the same folder.
    const auto to = folderOf(tree().table, included);
    const auto found = tree().owners.find(included);
    const bool isOwn =
        found == tree().owners.end() ||
        std::any_of(found->second.begin(), found->second.end(),
                    [&](const std::string& owner) { return path.starts_with(owner); });
    const bool isAllowed = to == from || (!to.empty() && tree().table.at(from).contains(to));
    if (!isAllowed || !isOwn) strays.push_back(path + " includes " + included);
  }
  return strays;
}

TEST(Layering, IsAsTheTableSays) {
  EXPECT_GT(tree().sources.size(), 200U);
  EXPECT_GT(tree().owners.size(), 50U);
  for (const auto& [path, content] : tree().sources) {
    EXPECT_NE(folderOf(tree().table, path), "") << path << " lies in no folder of the table";
    for (const auto& stray : strayArrows(path, content)) ADD_FAILURE() << stray;
  }
}

TEST(Layering, HasNoCircleOfFolders) {
  // Folders whose own arrows all end at folders that went before go, until none is left.
  auto left = tree().table;
  for (bool goesOn = true; goesOn;) {
    goesOn = std::erase_if(left, [&](const auto& row) {
               return std::none_of(row.second.begin(), row.second.end(), [&](const auto& target) {
                 return target != row.first && left.contains(target);
               });
             }) > 0;
  }
  for (const auto& [folder, targets] : left) ADD_FAILURE() << folder << " is in a circle";
}

/// The words of a text in lower case; a name in camel case is several.
std::vector<std::string> partsOf(const std::string& text) {
  std::vector<std::string> parts(1);
  bool wasLower = false;
  for (const char each : text) {
    const bool isUpper = each >= 'A' && each <= 'Z';
    const bool isLetter = isUpper || (each >= 'a' && each <= 'z');
    if (!isLetter || (isUpper && wasLower)) parts.emplace_back();
    if (isLetter) parts.back() += static_cast<char>(each | 0x20);
    wasLower = isLetter && !isUpper;
  }
  return parts;
}

/// The words that the table of words replaces, as they stand in a text.
std::vector<std::string> ownWordsIn(const std::string& text) {
  static const auto& replaced = *new std::set<std::string>([] {
    std::set<std::string> words;
    std::ifstream document(fs::path(HLV_SOURCE_DIR) / "CONTRIBUTING.md");
    for (std::string line; std::getline(document, line) && !line.starts_with("## Words");) {
    }
    for (std::string line; std::getline(document, line) && !line.starts_with("## ");) {
      if (!line.starts_with("| `")) continue;
      for (const auto& word : wordsIn(line.substr(0, line.find(" | ")))) words.insert(word);
    }
    return words;
  }());
  EXPECT_GT(replaced.size(), 10U);
  auto words = partsOf(text);
  std::erase_if(words, [](const std::string& word) { return !replaced.contains(word); });
  return words;
}

TEST(Words, AreThoseOfTheField) {
  EXPECT_EQ(ownWordsIn("a NamedDoor, lanes_ and what the client told").size(), 3U);
  EXPECT_EQ(ownWordsIn("indoors, planet, toldo").size(), 0U);
  std::size_t read = 0;
  for (auto entry = fs::recursive_directory_iterator(HLV_SOURCE_DIR); entry != fs::end(entry);
       ++entry) {
    const auto name = entry->path().filename().string();
    if (entry->is_directory()) {
      if (name == "build" || name == "corpus" || name[0] == '.') entry.disable_recursion_pending();
      continue;
    }
    const std::set<std::string> texts = {".h",   ".cpp",  ".mm",    ".m",   ".js",
                                         ".css", ".html", ".json",  ".py",  ".sh",
                                         ".md",  ".txt",  ".cmake", ".lua", ""};
    if (!texts.contains(entry->path().extension()) || name == "CONTRIBUTING.md" ||
        name == "LayeringTests.cpp")
      continue;
    ++read;
    std::ifstream file(entry->path());
    std::size_t number = 0;
    for (std::string line; std::getline(file, line);) {
      ++number;
      for (const auto& word : ownWordsIn(line)) {
        ADD_FAILURE() << fs::relative(entry->path(), HLV_SOURCE_DIR).string() << ":" << number
                      << ": " << word;
      }
    }
  }
  EXPECT_GT(read, 500U);
}

TEST(Layering, SeesArrowsThatTheTableDoesNotHave) {
  const std::pair<std::string, std::string> forbidden[] = {
      {"Sandbox/Backend/Backend.cpp", "#include \"Sandbox/Provider/Provider.h\"\n"},
      {"Server/Http/Connection.cpp", "#include <map>\n#include \"Client/RemoteHost.h\"\n"},
      {"ObjC/HLVSDKPaylevenKit/HLVSDKPayleven.h", "#import \"Public/HLVSDKPayleven.h\"\n"},
      {"ObjC/Classes/Finder.mm", "  # import \"ObjC/Sandbox/HLVSandbox.h\"\n"},
      {"Tools/main.cpp", "#include \"Server/Api/World.h\"\n"},
      {"Public/HLVSDKPayleven.cpp", "#include \"Unknown/File.h\"\n"}};
  for (const auto& [path, content] : forbidden) {
    EXPECT_EQ(strayArrows(path, content).size(), 1U) << path;
  }
}

// The kit links the standard library and the platform, whose own headers stay behind the default
// platform.
TEST(Layering, TheKitShowsNoLibrary) {
  const Folders kit = {"Values", "Async", "Platform", "Host", "Matching", "Models", "Public"};
  for (const auto& [path, content] : tree().sources) {
    if (!kit.contains(path.substr(0, path.find('/'))) || path.starts_with("Platform/Default/")) {
      continue;
    }
    for (const auto& header : includesIn(content, '<', '>')) {
      EXPECT_EQ(header.find_first_of("/."), std::string::npos) << path << ": " << header;
    }
  }
}

}  // namespace
