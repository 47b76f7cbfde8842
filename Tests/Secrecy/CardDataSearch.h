// Looks for one card's number and security code in whatever was written.
#pragma once

#include <cstddef>
#include <optional>
#include <ostream>
#include <string_view>
#include <vector>

namespace hlv::testing {

/// Finds the number, whole or in part, with or without gaps, and the security code as a number of
/// its own. Only the number's last four digits may stand.
///
/// Goes once over a text, allocates nothing, and returns where it found something but never what.
/// Keeps the digits as values and not as characters, so that a search of the process's own memory
/// does not find the searcher. Threading: any, once it is made.
class CardDataSearch {
 public:
  enum class What { number, code };
  struct Finding {
    What what;
    /// Where in the text it begins, and how many digits can be read.
    std::size_t at, digits;
  };

  /// `code` may be empty; it must not be the number's last four digits.
  CardDataSearch(std::string_view number, std::string_view code);

  /// The first finding that begins at `from` or behind it.
  std::optional<Finding> in(std::string_view text, std::size_t from = 0) const;

 private:
  std::size_t digitsOfNumberAt(std::string_view text, std::size_t at) const;
  bool isCodeAt(std::string_view text, std::size_t at) const;

  std::vector<unsigned char> number_, code_;
};

std::ostream& operator<<(std::ostream& out, const CardDataSearch::Finding& finding);

}  // namespace hlv::testing
