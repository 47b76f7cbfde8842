// The files of the console's page, part of the program. Private to the server.
#pragma once

#include <string_view>

namespace hlv::server {

struct PageFile {
  /// As in its URL; the page itself is "".
  std::string_view name;
  std::string_view type;
  std::string_view content;
};

/// Null for no such file. Threading: any.
const PageFile* findPageFile(std::string_view name);

}  // namespace hlv::server
