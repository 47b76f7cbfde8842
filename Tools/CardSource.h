// Where the card of a command comes from: a test card, a person, or standard input.
//
// Threading: the main thread.
#pragma once

#include <optional>
#include <string>

#include "Sandbox/Cards/EnteredCard.h"

namespace CLI {
class App;
}

namespace hlv::sandbox::tool {

/// Number and security code are typed unseen, or read from standard input as its first and second
/// line. Arguments never carry them.
class CardSource {
 public:
  /// Adds the options that describe a card.
  void addOptions(CLI::App& command);
  /// The card, complete. Throws Problem when something is missing.
  CardFields read() const;

  static std::string testCardList();
  /// The test card of that name. Throws Problem when there is none.
  static CardFields testCard(const std::string& name);

 private:
  CardFields readTyped() const;

  std::string testCard_;
  std::optional<std::string> month_;
  std::optional<std::string> year_;
  std::optional<std::string> holder_;
  std::optional<std::string> useCase_;
};

}  // namespace hlv::sandbox::tool
