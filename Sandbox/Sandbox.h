// A whole host SDK and a whole payment provider, embedded: what the kit runs against without a
// phone, an account or a network.
//
// Threading: any thread, except where a member says otherwise. Services reply on threads of the
// sandbox's own, which start with the first request. A member that reads or writes throws `Problem`
// when the store stops working under it: a full disk, a file that was taken away.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Host/Host.h"
#include "Sandbox/Calls/Journal.h"
#include "Sandbox/Records/BackendCard.h"
#include "Sandbox/Records/EnteredAddress.h"
#include "Sandbox/Records/ProviderInstrument.h"
#include "Sandbox/Testing/Tester.h"
#include "Values/Result.h"

namespace hlv::sandbox {

struct SandboxOptions {
  /// The SQLite file; created, readable by its owner only, when it is not there.
  std::string storePath;
  /// Makes tokens and identifiers repeatable; random without one. A new store remembers its
  /// seed; a store that is there already keeps what it was made with.
  std::optional<std::uint64_t> seed;
  /// Where the remote logger appends; empty means the store's path followed by ".log".
  std::string remoteLogPath;
  /// Whether the console logger writes to standard error.
  bool logToConsole = false;
};

struct Parts;
class Store;

class Sandbox {
 public:
  /// Opens a store, or makes one. Whatever an earlier process stored is still there.
  static Result<std::shared_ptr<Sandbox>> open(const SandboxOptions& options);
  /// The same with a new store that goes with the sandbox and leaves no file, nor a log of its own.
  static Result<std::shared_ptr<Sandbox>> openInMemory(SandboxOptions options = {});
  /// The same on a store that is open already; only the options about logs count. For a server.
  static Result<std::shared_ptr<Sandbox>> over(std::shared_ptr<Store> store,
                                               const SandboxOptions& options);
  ~Sandbox();
  Sandbox(const Sandbox&) = delete;
  Sandbox& operator=(const Sandbox&) = delete;

  /// What to install with `Host::install` before the kit is enabled. Keeps the sandbox's services
  /// alive by itself.
  [[nodiscard]] std::shared_ptr<Host> host() const;
  /// For another host over this sandbox, whose services are elsewhere (`DeviceHost`).
  const std::shared_ptr<Parts>& parts() const { return parts_; }
  /// What a tester does. Keeps the store alive by itself.
  [[nodiscard]] std::shared_ptr<Tester> tester() const;
  /// The timeline.
  Journal& journal() const;

  // What an app does.

  /// Signs a guest in, creating one for a new address, and posts the authorisation notification. An
  /// address in which a card number may stand is refused, because addresses are kept as they are
  /// typed.
  Result<> signIn(const std::string& email);
  /// Whether `signIn` would take the address.
  static Result<> checkAddress(const std::string& email);
  void signOut();
  /// The signed-in guest's address.
  std::optional<std::string> signedInEmail() const;
  /// Turns the network on or off and posts the reachability notification.
  void setReachable(bool reachable);
  bool isReachable() const;
  /// Posts the notification that the app returns to the foreground.
  void enterForeground();

  /// Forgets guests, cards, instruments, faults, kept replies, the clock and the journal, turns the
  /// network on and notifies the app that nobody is signed in. Identifiers go on where they were.
  void reset();

  // The two sides of the signed-in guest, as the services have them now. At the provider that is
  // what it keeps for the guest's address, whether or not the backend knows the token.

  std::vector<BackendCard> backendCards() const;
  std::vector<ProviderInstrument> providerInstruments() const;

  /// A note under that name that outlives the process; missing for none.
  std::optional<std::string> note(const std::string& name) const;
  void setNote(const std::string& name, const std::string& text);
  /// Another number whenever this process or another has changed something.
  std::int64_t changes() const;

  /// Whether no reply of a service is still to come. A call that never gets one is not awaited.
  [[nodiscard]] bool isQuiet() const;

 private:
  explicit Sandbox(std::shared_ptr<Parts> parts);

  const std::shared_ptr<Parts> parts_;
  const std::shared_ptr<Host> host_;
};

}  // namespace hlv::sandbox
