// The tables of a store. Private to the sandbox.
#pragma once

#include <cstdint>

namespace hlv::sandbox {

/// Marks a SQLite file as a sandbox's store.
inline constexpr std::int64_t applicationID = 0x484C5653;
/// Goes up with every change of the tables.
inline constexpr std::int64_t schemaVersion = 3;

/// Makes the tables. The backend's and the provider's are two services' and never meet: no
/// statement reads both.
extern const char* const schema;

}  // namespace hlv::sandbox
