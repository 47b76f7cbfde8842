// How an app enables the kit: as it should, or as it might get it wrong.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace hlv::sandbox {

enum class Enabling { normal, noEntry, wrongClass, noKey, none };

/// "normal", "no-entry", "wrong-class", "no-key" and "none". Threading of these: any.
std::string_view textOf(Enabling enabling);
/// Missing for a name that is none.
std::optional<Enabling> enablingNamed(std::string_view name);
std::vector<Enabling> allEnablings();

/// Threading: the main thread.
void enableKit(Enabling enabling);

}  // namespace hlv::sandbox
