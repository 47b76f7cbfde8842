#include "Sandbox/Store/Identifiers.h"

#include <optional>
#include <random>

#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox {
namespace {

constexpr const char* seedSetting = "seed";

std::optional<std::uint64_t> seedOf(Database& database) {
  const auto text = readSetting(database, seedSetting);
  return text ? std::optional<std::uint64_t>(std::stoull(*text)) : std::nullopt;
}

std::int64_t countOne(Database& database, const std::string& kind) {
  auto row = database.query(
      "INSERT INTO identifiers (kind, made) VALUES (?, 1) "
      "ON CONFLICT (kind) DO UPDATE SET made = made + 1 RETURNING made",
      kind);
  row.next();
  const auto made = row.integer(0);
  row.next();
  return made;
}

/// Written out because a standard engine fed by a standard seed sequence mixes the three as well,
/// but its distributions differ between libraries.
class Dice {
 public:
  Dice(std::uint64_t seed, const std::string& kind, std::int64_t made) : state_(seed) {
    for (const char character : kind) mix(static_cast<unsigned char>(character));
    mix(static_cast<std::uint64_t>(made));
  }

  char letter() { return static_cast<char>('a' + number(26)); }
  std::uint64_t number(std::uint64_t sides) { return mix(1) % sides; }

 private:
  std::uint64_t mix(std::uint64_t value) {
    state_ += value + 0x9E3779B97F4A7C15;
    auto result = state_;
    result = (result ^ (result >> 30)) * 0xBF58476D1CE4E5B9;
    result = (result ^ (result >> 27)) * 0x94D049BB133111EB;
    state_ = result ^ (result >> 31);
    return state_;
  }

  std::uint64_t state_;
};

}  // namespace

void plantSeed(Database& database, std::uint64_t seed) {
  writeSetting(database, seedSetting, std::to_string(seed));
}

std::string makeIdentifier(Database& database, const std::string& kind) {
  constexpr int length = 20;
  const auto seed = seedOf(database);
  const auto made = countOne(database, kind);
  std::string identifier = kind + "_";
  if (seed) {
    Dice dice(*seed, kind, made);
    for (int i = 0; i < length; ++i) identifier += dice.letter();
  } else {
    std::random_device device;
    std::uniform_int_distribution<int> letter('a', 'z');
    for (int i = 0; i < length; ++i) identifier += static_cast<char>(letter(device));
  }
  return identifier;
}

std::int64_t throwDice(Database& database, std::int64_t sides) {
  const std::string kind = "throw";
  const auto seed = seedOf(database);
  const auto made = countOne(database, kind);
  Dice dice(seed ? *seed : std::random_device()(), kind, made);
  return static_cast<std::int64_t>(dice.number(static_cast<std::uint64_t>(sides)));
}

}  // namespace hlv::sandbox
