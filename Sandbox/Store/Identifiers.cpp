#include "Sandbox/Store/Identifiers.h"

#include <cmath>
#include <numbers>
#include <random>

#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox {
namespace {

constexpr const char* seedSetting = "seed";

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
class Generator {
 public:
  Generator(std::uint64_t seed, const std::string& kind, std::int64_t made) : state_(seed) {
    for (const char character : kind) mix(static_cast<unsigned char>(character));
    mix(static_cast<std::uint64_t>(made));
  }

  std::string letters(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += static_cast<char>('a' + number(26));
    return text;
  }
  std::uint64_t number(std::uint64_t limit) { return mix(1) % limit; }

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

std::uint64_t freshSeed() {
  std::random_device device;
  return std::uint64_t{device()} << 32 | device();
}

/// For the next one of a kind.
Generator generatorFor(Database& database, const std::string& kind) {
  const auto seed = seedOf(database);
  return {seed ? *seed : freshSeed(), kind, countOne(database, kind)};
}

}  // namespace

std::optional<std::uint64_t> seedOf(Database& database) {
  const auto text = readSetting(database, seedSetting);
  return text ? std::optional<std::uint64_t>(std::stoull(*text)) : std::nullopt;
}

void storeSeed(Database& database, std::uint64_t seed) {
  writeSetting(database, seedSetting, std::to_string(seed));
}

std::string makeIdentifier(Database& database, const std::string& kind) {
  return kind + "_" + generatorFor(database, kind).letters(20);
}

std::string randomLetters(int count) { return Generator(freshSeed(), {}, 0).letters(count); }

std::int64_t randomBelow(Database& database, std::int64_t limit) {
  return static_cast<std::int64_t>(
      generatorFor(database, "throw").number(static_cast<std::uint64_t>(limit)));
}

double randomNormal(Database& database) {
  // Written out, as the standard's distribution differs between libraries.
  constexpr std::int64_t steps = 1LL << 32;
  const auto uniform = [&] {
    return (static_cast<double>(randomBelow(database, steps)) + 0.5) / static_cast<double>(steps);
  };
  const auto radius = std::sqrt(-2 * std::log(uniform()));
  return radius * std::cos(2 * std::numbers::pi * uniform());
}

}  // namespace hlv::sandbox
