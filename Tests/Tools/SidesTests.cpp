#include <gtest/gtest.h>

#include "Tools/Output/SideBySide.h"
#include "Tools/Output/Timeline.h"

namespace hlv::sandbox::tool {
namespace {

BackendCard card(const std::string& lastFour, std::optional<std::string> externalIdentifier = {}) {
  BackendCard card;
  card.brand = "visa";
  card.lastFourDigits = lastFour;
  card.useCase = "default";
  card.externalIdentifier = std::move(externalIdentifier);
  return card;
}

ProviderInstrument instrument(const std::string& lastFour, const std::string& useCase,
                              std::optional<std::string> identifier = "ins_a") {
  return {std::move(identifier), "visa", "************" + lastFour, useCase, {}, {}, 0};
}

TEST(ToolSides, JoinWhatBelongsTogether) {
  const auto one = instrument("1111", "default");
  const struct {
    const char* name;
    std::vector<BackendCard> cards;
    std::vector<ProviderInstrument> instruments;
    std::size_t unmatched;
  } rows[] = {
      {"nothing on either side", {}, {}, 0},
      {"only the identifier decides", {card("2222", "ins_a")}, {one}, 0},
      {"a card with an identifier is not tried by its digits", {card("1111", "ins_b")}, {one}, 2},
      {"a card without one is tried by digits, brand and use case", {card("1111")}, {one}, 0},
      {"another use case is another one", {card("1111")}, {instrument("1111", "private")}, 2},
      {"an instrument belongs to one card only", {card("1111"), card("1111")}, {one}, 1},
      {"two without identifier", {card("1111")}, {instrument("2222", "default", {})}, 2},
  };
  for (const auto& row : rows) {
    const SideBySide sides(row.cards, row.instruments);
    EXPECT_EQ(sides.unmatched(), row.unmatched) << row.name;
    EXPECT_EQ(sides.verdict() == "Both sides agree.", row.unmatched == 0) << row.name;
  }
}

TEST(ToolTimeline, JoinsEachAnswerToItsCallWhileOthersAreOpen) {
  const auto event = [](const char* from, const char* to, const char* what, const char* result) {
    return Event{1, from, to, what, result, "main"};
  };
  const std::vector<Event> events = {
      event("app", "kit", "add", ""),
      event("kit", "provider", "register", ""),
      event("kit", "backend", "updateGuest", ""),
      event("kit", "backend", "addCard visa", ""),
      event("backend", "kit", "addCard visa", "card crd_1"),
      event("kit", "log", "all is done", "info"),
      event("backend", "kit", "updateGuest", "done"),
      event("backend", "kit", "updateGuest", "done"),
      event("kit", "app", "add", "card crd_1"),
  };
  EXPECT_EQ(timelineTable(events).text(Terminal()),
            "  ┌    app → kit       main  add\n"
            "  │·   kit → provider  main  register\n"
            "  │┌   kit → backend   main  updateGuest\n"
            "  ││┌  kit → backend   main  addCard visa\n"
            "  ││└  backend → kit   main  addCard visa: card crd_1\n"
            "  ││·  kit → log       main  info: all is done\n"
            "  │└   backend → kit   main  updateGuest: done\n"
            "  │·   backend → kit   main  updateGuest: done\n"
            "  └    kit → app       main  add: card crd_1\n");
}

}  // namespace
}  // namespace hlv::sandbox::tool
