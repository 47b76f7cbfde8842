// What is known of the place that standard output goes to.
//
// Threading: immutable; any thread.
#pragma once

#include <cstddef>
#include <string>

namespace hlv::tool {

enum class Colour { plain, bold, dim, red, green, yellow };

class Terminal {
 public:
  /// No colours and no limit, for a file or a pipe.
  Terminal() = default;
  /// Colours only on a terminal, and only when NO_COLOR is not set.
  static Terminal ofStandardOutput();

  std::string paint(Colour colour, const std::string& text) const;
  /// How many characters fit on a line.
  std::size_t columns() const { return columns_; }

 private:
  bool colours_ = false;
  std::size_t columns_ = static_cast<std::size_t>(-1);
};

}  // namespace hlv::tool
