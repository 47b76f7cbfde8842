#include <memory>
#include <string>

#include "Tools/CardOperations.h"
#include "Tools/CommandLine.h"

namespace hlv::sandbox::tool {
namespace {

/// Something the app does and the kit may notice.
Report noticed(Session& session, const std::string& operation, const std::string& sentence,
               const std::function<void(Sandbox&)>& act) {
  session.beginWithKit(operation);
  act(session.sandbox());
  session.settle();
  return session.report(Report::Outcome::succeeded, sentence);
}

void defineSigning(CommandLine& line) {
  auto& signIn = CommandLine::add(line.app(), "sign-in", "Sign a guest in, new or known",
                                  "  paylevenkit sign-in guest@example.com\n");
  const auto email = std::make_shared<std::string>();
  signIn.add_option("EMAIL", *email, "The guest's e-mail address")->required();
  line.whenChosen(signIn, [email](Session& session) {
    Sandbox::checkAddress(*email).value();
    return noticed(session, "sign-in", *email + " is signed in.",
                   [&](Sandbox&) { session.signIn(*email); });
  });

  auto& signOut =
      CommandLine::add(line.app(), "sign-out", "Sign the guest out", "  paylevenkit sign-out\n");
  line.whenChosen(signOut, [](Session& session) {
    return noticed(session, "sign-out", "Nobody is signed in.",
                   [&](Sandbox&) { session.signOut(); });
  });
}

void defineNotifications(CommandLine& line) {
  auto& network = CommandLine::add(line.app(), "network", "Turn the network on or off",
                                   "  paylevenkit network off\n"
                                   "  paylevenkit network on\n");
  const auto state = std::make_shared<std::string>();
  network.add_option("STATE", *state, "on or off")->required()->check(CLI::IsMember({"on", "off"}));
  line.whenChosen(network, [state](Session& session) {
    return noticed(session, "network", "The network is " + *state + ".",
                   [&](Sandbox& sandbox) { sandbox.setReachable(*state == "on"); });
  });

  auto& foreground =
      CommandLine::add(line.app(), "foreground", "Let the app return to the foreground",
                       "  paylevenkit foreground\n");
  line.whenChosen(foreground, [](Session& session) {
    return noticed(session, "foreground", "The app has returned to the foreground.",
                   [](Sandbox& sandbox) { sandbox.enterForeground(); });
  });
}

void defineSync(CommandLine& line) {
  auto& sync =
      CommandLine::add(line.app(), "sync", "Remove at the provider what the backend does not know",
                       "  paylevenkit sync\n"
                       "  paylevenkit sync --by reachability\n");
  const auto by = std::make_shared<std::string>("foreground");
  sync.add_option("--by", *by, "What starts it: foreground, authorization or reachability")
      ->type_name("EVENT")
      ->check(CLI::IsMember({"foreground", "authorization", "reachability"}));
  line.whenChosen(sync, [by](Session& session) { return synchronize(session, *by); });
}

}  // namespace

void defineGuestCommands(CommandLine& line) {
  defineSigning(line);
  defineNotifications(line);
  defineSync(line);
}

}  // namespace hlv::sandbox::tool
