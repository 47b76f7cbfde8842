// What is known of the place that standard output goes to, and texts from elsewhere on their way to
// it.
//
// Threading: immutable, and pure functions; any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace hlv::sandbox::tool {

/// The same text with what would control the terminal, change the direction of writing or is no
/// UTF-8 written as `\x1b` or `\u202e`.
std::string escaped(std::string_view text);

/// The same text in ASCII, for a locale that has nothing else: lines and marks become characters
/// that look like them, everything else a question mark. As many characters as before.
std::string inASCII(std::string_view text);

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

}  // namespace hlv::sandbox::tool
