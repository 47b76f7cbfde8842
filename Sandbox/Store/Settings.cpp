#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox {

std::optional<std::string> readSetting(Database& database, const std::string& name) {
  return database.text("SELECT value FROM settings WHERE name = ?", name);
}

void writeSetting(Database& database, const std::string& name,
                  const std::optional<std::string>& value) {
  if (value) {
    database.run("INSERT OR REPLACE INTO settings (name, value) VALUES (?, ?)", name, *value);
  } else {
    database.run("DELETE FROM settings WHERE name = ?", name);
  }
}

}  // namespace hlv::sandbox
