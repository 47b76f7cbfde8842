// What a history is made of: who asks the kit for what, and what the services may answer.
//
// Threading: immutable once made; one thread.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Tests/Support/Answer.h"
#include "Tests/Support/Held.h"

namespace hlv::testing {

/// The people and things of every history. No two of them share a value that shows.
struct Fixtures : FakeObjects {
  static Fixtures& shared();
  Fixtures();

  /// The guest as the backend returns it after an add, and after a deletion.
  const std::shared_ptr<FakeGuest> addedTo = std::make_shared<FakeGuest>();
  const std::shared_ptr<FakeGuest> deletedFrom = std::make_shared<FakeGuest>();
  const std::shared_ptr<FakeGuest> tokenless = std::make_shared<FakeGuest>();
  /// A card of the guest with the identifier of the stored one, which counts.
  const std::shared_ptr<FakeStoredCard> namesake = std::make_shared<FakeStoredCard>();
  const std::shared_ptr<FakeStoredCard> registered = std::make_shared<FakeStoredCard>();
};

using Answers = std::vector<Answer>;
/// What each service may answer.
using PossibleReplies = std::map<Service, Answers>;

enum class OperationKind { enable, add, remove, update, confirm, fetchAll, synchronize };

/// How an operation is asked for: what is given, and what the card and the network say.
struct Request {
  const char* name = "plain";
  bool completion = true;
  NullableString guestToken = "t";
  bool guest = true;
  bool card = true;
  bool valid = true;
  std::int64_t network = 1;
  NullableString id = "card-1";
  NullableString useCase = "deleted";
  NullableString confirmToken = "confirmed";
  /// The keys in the kits array for enabling; "no key", "nothing" and "another kit" are what they
  /// say.
  std::vector<std::string> kits = {};
};

struct Operation {
  OperationKind kind;
  std::vector<Request> requests;
};

/// A notification that may come at any time, with the number that it carries under each key. The
/// host changes what it says of the network first.
struct Posted {
  const char* text;
  std::string name;
  int state = 0;
  int previous = 0;
};

/// A family of histories. The kit is enabled before it begins, unless an operation enables it. A
/// service that has only one answer on its replies gives it at once; every other one chooses.
struct Scenario {
  std::string name;
  std::vector<Operation> operations;
  PossibleReplies replies;
  /// Whether services answer on both threads.
  bool bothThreads = true;
  /// What may be posted.
  std::vector<Posted> notifications = {};
  /// How many things may come in between: a second answer, a release, a notification.
  std::size_t interferences = 0;
  /// The kit's own guest has a token only if notifications are to synchronise.
  bool kitGuestHasToken = false;
  bool authorized = true;
  /// Whether it has so many histories that it is played only when asked for.
  bool isLong = false;
};

const std::vector<Scenario>& allScenarios();

}  // namespace hlv::testing
