// Looks for one card's number and security code in whatever was written.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace hlv::testing {

/// Finds the number, whole or in part, with or without gaps, and the security code as a number of
/// its own. Only the number's last four digits may stand. Threading: any, once it is made.
class CardDataSearch {
 public:
  /// `code` may be empty; it must not be the number's last four digits.
  CardDataSearch(std::string number, std::string code)
      : number_(std::move(number)), code_(std::move(code)) {}

  /// Where the first finding begins. What it is stays out of the messages of tests.
  std::optional<std::size_t> in(std::string_view text) const;

 private:
  bool isNumberAt(std::string_view text, std::size_t at) const;
  bool isCodeAt(std::string_view text, std::size_t at) const;

  std::string number_, code_;
};

}  // namespace hlv::testing
