// Single values of a store. Private to the sandbox and the server.
//
// Threading: inside `Store::read` and `Store::write`.
#pragma once

#include <optional>
#include <string>

#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {

inline std::optional<std::string> readSetting(Database& database, const std::string& name) {
  return database.text("SELECT value FROM settings WHERE name = ?", name);
}

/// A missing value takes the setting away.
inline void writeSetting(Database& database, const std::string& name,
                         const std::optional<std::string>& value) {
  if (value) {
    database.run("INSERT OR REPLACE INTO settings (name, value) VALUES (?, ?)", name, *value);
  } else {
    database.run("DELETE FROM settings WHERE name = ?", name);
  }
}

}  // namespace hlv::sandbox
