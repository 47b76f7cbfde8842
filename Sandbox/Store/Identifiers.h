// Makes tokens and identifiers. Private to the sandbox.
//
// Threading: inside `Store::write`.
#pragma once

#include <cstdint>
#include <string>

#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {

/// From now on the store's identifiers repeat for the same seed.
void plantSeed(Database& database, std::uint64_t seed);

/// A new identifier, such as "ins_" and twenty letters: random, or under a seed the same for the
/// nth identifier of a kind, whatever other kinds were made between. Letters only, so that none
/// looks like a card number.
std::string makeIdentifier(Database& database, const std::string& kind);

/// From zero to below `sides`: random, or under a seed always the same row of throws.
std::int64_t throwDice(Database& database, std::int64_t sides);

}  // namespace hlv::sandbox
