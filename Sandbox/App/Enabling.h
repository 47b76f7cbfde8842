// How an app enables the kit: as it should, or as it might get it wrong.
#pragma once

namespace hlv::sandbox {

enum class Enabling { normal, noEntry, wrongClass, noKey, none };

/// Threading: the main thread.
void enableKit(Enabling enabling);

}  // namespace hlv::sandbox
