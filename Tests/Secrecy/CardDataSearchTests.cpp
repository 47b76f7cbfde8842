// The search that the other secrecy tests rely on can fail.
#include <gtest/gtest.h>

#include "Tests/Secrecy/CardDataSearch.h"

namespace hlv::testing {
namespace {

// Of no issuer's card: it fails the checksum.
const CardDataSearch search("4111222233334444", "7391");

TEST(CardDataSearchTest, FindsTheNumberInEveryGuiseAndTheCodeAsANumberOfItsOwn) {
  const std::pair<std::string_view, std::size_t> rows[] = {
      {"4111222233334444", 0},
      {"94111222233334444", 1},
      {"4111 2222 3333 4444", 0},
      {"4 1 1 1 2 2 2 2 3 3 3 3 4 4 4 4", 0},
      {"***********34444", 11},
      {"4111 22** **** 4444", 0},
      {"**** **** 3333 4444", 10},
      {"1222 a 41112", 7},
      {"http://127.0.0.1:411122", 17},
      {std::string_view("\0\0"
                        "22233\0",
                        8),
       2},
      {"a7391b", 1},
      {"v.7391", 2},
      {"17391 7391", 6},
  };
  for (const auto& [text, at] : rows) EXPECT_EQ(search.in(text), at) << "of " << text.size();
}

TEST(CardDataSearchTest, LetsTheLastFourDigitsAndOtherNumbersStand) {
  for (const std::string_view text :
       {"", "****4444", "************4444", "**** **** **** 4444", "4444 4/2033", "visa 4111",
        "411-13 1222", "4444444444444444", "73910", "17391", "739", "7 391", "12:30:41.112",
        "12:30:00.7391", "2033-04-11 12:22", "http://127.0.0.1:41112/v1", "4444333322221114"}) {
    EXPECT_EQ(search.in(text), std::nullopt);
  }
}

}  // namespace
}  // namespace hlv::testing
