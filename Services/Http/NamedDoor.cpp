#include "Services/Http/NamedDoor.h"

#include "Services/Json.h"

namespace hlv::services {
namespace {

int portIn(const std::string& text) {
  constexpr int greatest = 65'535;
  const auto port = numberOf(text).value_or(0);
  return port > 0 && port <= greatest ? static_cast<int>(port) : 0;
}

}  // namespace

Door::Opened openNamedDoor(sandbox::Sandbox& sandbox, const std::string& name, int port,
                           const Listening& listening, const Door::Handler& handler) {
  if (listening.address != "127.0.0.1" && !listening.beyondThisMachine) {
    return {nullptr,
            "The services listen on this machine alone, at 127.0.0.1, unless they are told "
            "to listen beyond it."};
  }
  const auto open = [&](int at) {
    return Door::open("http-" + name, listening.address, at, listening.limits, handler);
  };
  const auto note = "port of the " + name;
  const int before = port == 0 ? portIn(sandbox.note(note).value_or("")) : 0;
  auto opened = before != 0 ? open(before) : Door::Opened();
  if (!opened.door) opened = open(port);
  if (opened.door) sandbox.setNote(note, std::to_string(opened.door->port()));
  return opened;
}

std::string urlOf(const Door& door, const Listening& listening) {
  return "http://" + listening.address + ":" + std::to_string(door.port());
}

}  // namespace hlv::services
