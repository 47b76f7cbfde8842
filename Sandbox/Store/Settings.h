// Single values of a store. Private to the sandbox and the server.
//
// Threading: inside `Store::read` and `Store::write`.
#pragma once

#include <optional>
#include <string>

#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {

std::optional<std::string> readSetting(Database& database, const std::string& name);
/// A missing value takes the setting away.
void writeSetting(Database& database, const std::string& name,
                  const std::optional<std::string>& value);

}  // namespace hlv::sandbox
