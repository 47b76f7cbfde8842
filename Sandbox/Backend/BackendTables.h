// The backend's rows. Private to the sandbox and the server.
//
// Threading: inside `Store::read` and `Store::write`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Sandbox/Records/BackendCard.h"
#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {

bool hasGuest(Database& database, const std::string& email);
/// Does nothing for a guest who is there.
void insertGuest(Database& database, const std::string& email);
/// The only guest; missing for none and for several.
std::optional<std::string> readOnlyGuest(Database& database);
std::optional<std::string> readGuestToken(Database& database, const std::string& email);
/// In the order in which they were added.
std::vector<BackendCard> readCards(Database& database, const std::string& email);
/// Missing when the guest has no such card.
std::optional<BackendCard> readCard(Database& database, const std::string& email,
                                    const std::string& halvoID);
void insertCard(Database& database, const std::string& email, const BackendCard& card);
/// Changes the fields that are present. False when the guest has no such card.
bool updateAddress(Database& database, const std::string& email, const std::string& halvoID,
                   const AddressFields& address);
/// False when the guest has no such card.
bool removeCard(Database& database, const std::string& email, const std::string& halvoID);

/// Grows with every change of a guest, and never goes back, not even when everything is forgotten.
std::int64_t readRevision(Database& database);
void raiseRevision(Database& database);
/// Raises it above another one.
void raiseRevisionAbove(Database& database, std::int64_t revision);

/// A new session of a guest. The last ten thousand are kept.
std::string insertSession(Database& database, const std::string& email);
/// The guest of a session; missing for none.
std::optional<std::string> readSessionGuest(Database& database, const std::string& session);
/// False when there is no such session.
bool removeSession(Database& database, const std::string& session);

}  // namespace hlv::sandbox
