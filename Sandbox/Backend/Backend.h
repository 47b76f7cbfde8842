// The backend's rules: its guests, their sessions and their cards. Private to the sandbox and the
// server.
//
// Threading: inside `Store::read` and `Store::write`. All of these throw `Refusal` where a rule is
// broken, and nothing is changed then.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Sandbox/Faults/Fault.h"
#include "Sandbox/Records/BackendGuest.h"
#include "Sandbox/Store/Database.h"
#include "Values/NullableString.h"
#include "Values/Result.h"
#include "Values/Value.h"

namespace hlv::sandbox::backend {

/// For whom a call is made.
struct Caller {
  enum class Kind {
    /// The app of this process: the guest must be the one who is signed in there.
    app,
    /// A client with a session: the guest must be the session's.
    session,
    /// A client without one: the guest must be there.
    anyone
  };
  Kind kind = Kind::app;
  /// The guest that the call names.
  NullableString guest = {};
  std::string session = {};
};

/// Whether a guest can have this address.
Result<> checkAddress(const std::string& email);

/// The guest of the app in this process, who is made when there is none of that address.
void signIn(Database& database, const std::string& email);
void signOut(Database& database);
std::optional<std::string> signedInEmail(Database& database);

/// Makes the guest when there is none of that address, and a session of the guest.
std::string openSession(Database& database, const std::string& email);
void endSession(Database& database, const std::string& session);

/// The address of the guest for whom the call is made.
std::string ownerOf(Database& database, const Caller& caller);
BackendGuest readGuest(Database& database, const std::string& email, bool withCards);

/// Each returns the address of the guest who was changed.
std::string updateGuest(Database& database, const Caller& caller, const NullableString& token);
std::string deleteCard(Database& database, const Caller& caller, const NullableString& halvoID);

struct OwnedCard {
  std::string owner;
  BackendCard card;
};
OwnedCard addCard(Database& database, const Caller& caller, const Dictionary& body);
OwnedCard updateCard(Database& database, const Caller& caller, const NullableString& halvoID,
                     const Dictionary& address);

/// Missing where the fault `noList` says so.
std::optional<std::vector<BackendCard>> fetchCards(Database& database, const Caller& caller,
                                                   std::optional<FaultKind> fault);

/// False when the guest has no token to lose.
bool loseToken(Database& database, const std::string& email);

}  // namespace hlv::sandbox::backend
