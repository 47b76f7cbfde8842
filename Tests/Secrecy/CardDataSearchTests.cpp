// The search that the other secrecy tests rely on can fail.
#include <gtest/gtest.h>

#include <sstream>

#include "Tests/Secrecy/CardDataSearch.h"

namespace hlv::testing {
namespace {

using What = CardDataSearch::What;

// Of no issuer's card: it fails the checksum.
const CardDataSearch search("4111222233334444", "7391");

TEST(CardDataSearchTest, FindsTheNumberInEveryGuiseAndTheCodeAsANumberOfItsOwn) {
  const struct {
    std::string_view text;
    What what;
    std::size_t at, digits;
  } rows[] = {
      {"4111222233334444", What::number, 0, 16},
      {"94111222233334444", What::number, 1, 16},
      {"4111 2222 3333 4444", What::number, 0, 16},
      {"4 1 1 1 2 2 2 2 3 3 3 3 4 4 4 4", What::number, 0, 16},
      {"***********34444", What::number, 11, 5},
      {"4111 22** **** 4444", What::number, 0, 6},
      {"**** **** 3333 4444", What::number, 10, 8},
      {"1222 a 41112", What::number, 7, 5},
      {"http://127.0.0.1:411122", What::number, 17, 6},
      {std::string_view("\0\0"
                        "22233\0",
                        8),
       What::number, 2, 5},
      {"a7391b", What::code, 1, 4},
      {"v.7391", What::code, 2, 4},
      {"17391 7391", What::code, 6, 4},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const auto found = search.in(row.text);
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->what, row.what);
    EXPECT_EQ(found->at, row.at);
    EXPECT_EQ(found->digits, row.digits);
    EXPECT_FALSE(search.in(row.text.substr(0, found->at))) << "the first one";
  }
}

TEST(CardDataSearchTest, LetsTheLastFourDigitsAndOtherNumbersStand) {
  for (const std::string_view text :
       {"", "****4444", "************4444", "**** **** **** 4444", "4444 4/2033", "visa 4111",
        "411-13 1222", "4444444444444444", "73910", "17391", "739", "7 391", "12:30:00.7391",
        "2033-04-11 12:22", "http://127.0.0.1:41112/v1", "4444333322221114"}) {
    EXPECT_EQ(search.in(text), std::nullopt);
  }
  const auto next = search.in("739 and 33334444");
  ASSERT_TRUE(next.has_value());
  std::ostringstream shown;
  shown << *next;
  EXPECT_EQ(shown.str(), "8 digits of the number at 8") << "and no digit of it";
}

}  // namespace
}  // namespace hlv::testing
