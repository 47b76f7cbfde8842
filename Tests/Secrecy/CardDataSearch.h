// Looks for one card's number and security code in whatever was written.
#pragma once

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

namespace hlv::testing {

/// Finds the number, whole or in part, with or without gaps, and the security code as a number of
/// its own. Only the number's last four digits may stand.
///
/// Goes once over a text and returns where it found something but never what. Threading: any.
class CardDataSearch {
 public:
  enum class What { number, code };
  struct Finding {
    What what;
    /// Where in the text it begins, and how many digits can be read.
    std::size_t at, digits;
  };

  /// `code` may be empty; it must not be the number's last four digits.
  CardDataSearch(std::string number, std::string code)
      : number_(std::move(number)), code_(std::move(code)) {}

  /// The first finding.
  std::optional<Finding> in(std::string_view text) const;

 private:
  std::size_t digitsOfNumberAt(std::string_view text, std::size_t at) const;
  bool isCodeAt(std::string_view text, std::size_t at) const;

  std::string number_, code_;
};

std::ostream& operator<<(std::ostream& out, const CardDataSearch::Finding& finding);

}  // namespace hlv::testing
