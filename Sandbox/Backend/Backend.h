// The backend: its guests and their cards. Private to the sandbox.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKCompletions.h"
#include "Platform/Value.h"
#include "Sandbox/Backend/Guest.h"
#include "Sandbox/BackendCard.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {

/// The operations of the service throw `Refusal`; `guest` in them is the address of the guest that
/// the caller speaks for.
///
/// Threading: any.
class Backend {
 public:
  using GuestAnswer = std::tuple<std::shared_ptr<HLVSDKGuest>, ErrorPtr>;
  using CardAnswer =
      std::tuple<std::shared_ptr<HLVSDKGuest>, std::shared_ptr<HLVSDKCreditCard>, ErrorPtr>;
  using CardsAnswer = std::tuple<NullableList<HLVSDKCreditCard>, ErrorPtr>;

  explicit Backend(std::shared_ptr<Store> store) : store_(std::move(store)) {}

  /// Makes the guest when there is none of that address.
  void signIn(const std::string& email);
  void signOut();
  std::optional<std::string> signedInEmail() const;
  /// One object for each guest, for as long as the process lives.
  std::shared_ptr<HLVSDKGuest> guest(const std::string& email);
  std::vector<BackendCard> cardsOf(const std::string& email) const;
  /// False when the guest has no token to lose.
  bool loseToken(const std::string& email);

  GuestAnswer updateGuest(const NullableString& token);
  CardAnswer addCard(const NullableString& guest, const Dictionary& body);
  GuestAnswer deleteCard(const NullableString& halvoID, const NullableString& guest);
  CardAnswer updateCard(const NullableString& halvoID, const Dictionary& address,
                        const NullableString& guest);
  CardsAnswer fetchCards(const NullableString& guest, const std::string& variation);

 private:
  /// Writes what `change(Database&)` changes of a guest, and answers what it returns.
  template <class Change>
  auto write(Change change);
  CardAnswer answerWithCard(const std::string& email, const std::string& halvoID);

  const std::shared_ptr<Store> store_;
  std::mutex mutex_;
  std::map<std::string, std::weak_ptr<Guest>> guests_;
};

}  // namespace hlv::sandbox
