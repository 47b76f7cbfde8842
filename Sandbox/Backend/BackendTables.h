// The backend's rows. Private to the sandbox.
//
// Threading: inside `Store::read` and `Store::write`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Sandbox/BackendCard.h"
#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {

std::optional<std::string> readGuestToken(Database& database, const std::string& email);
/// In the order in which they were added.
std::vector<BackendCard> readCards(Database& database, const std::string& email);
void insertCard(Database& database, const std::string& email, const BackendCard& card);
/// Changes the fields that are present. False when the guest has no such card.
bool updateAddress(Database& database, const std::string& email, const std::string& halvoID,
                   const AddressFields& address);
/// False when the guest has no such card.
bool removeCard(Database& database, const std::string& email, const std::string& halvoID);

/// Grows with every change of a guest, and never goes back, not even when everything is forgotten.
std::int64_t readRevision(Database& database);
void raiseRevision(Database& database);

}  // namespace hlv::sandbox
