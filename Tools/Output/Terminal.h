// What is known of the place that standard output goes to.
//
// Threading: immutable; any thread.
#pragma once

#include <cstddef>
#include <string>

#include "Tools/Output/Characters.h"

namespace hlv::tool {

enum class Colour { plain, bold, dim, red, green, yellow };

class Terminal {
 public:
  /// No colours and no limit, for a file or a pipe.
  Terminal() = default;
  /// Colours only on a terminal, and only when NO_COLOR is not set. COLUMNS says how wide lines
  /// are, or else the terminal; only a locale of another encoding than UTF-8 keeps lines to ASCII.
  static Terminal ofStandardOutput();

  std::string paint(Colour colour, const std::string& text) const;
  bool hasUTF8() const { return hasUTF8_; }
  /// In the characters that there are.
  std::string encoded(const std::string& text) const { return hasUTF8_ ? text : inASCII(text); }
  /// How many characters fit on a line.
  std::size_t columns() const { return columns_; }

 private:
  bool colours_ = false;
  bool hasUTF8_ = true;
  std::size_t columns_ = static_cast<std::size_t>(-1);
};

}  // namespace hlv::tool
