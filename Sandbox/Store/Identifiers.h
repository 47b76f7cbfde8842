// Makes tokens and identifiers. Private to the sandbox and the server.
//
// Threading: inside `Store::write`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {

/// From now on the store's identifiers repeat for the same seed.
void storeSeed(Database& database, std::uint64_t seed);
std::optional<std::uint64_t> seedOf(Database& database);

/// A new identifier, such as "ins_" and twenty letters: random, or under a seed the same for the
/// nth identifier of a kind, whatever other kinds were made between. Letters only, so that none
/// looks like a card number.
std::string makeIdentifier(Database& database, const std::string& kind);

/// From zero to below `limit`: random, or under a seed always the same sequence.
std::int64_t randomBelow(Database& database, std::int64_t limit);
/// Of the normal distribution with mean 0 and standard deviation 1; as repeatable.
double randomNormal(Database& database);

/// Letters that no seed repeats.
std::string randomLetters(int count);

}  // namespace hlv::sandbox
