#include "Tools/Output/Table.h"

#include <algorithm>

namespace hlv::sandbox::tool {
namespace {

constexpr std::size_t indent = 2;
constexpr std::size_t gap = 2;

bool beginsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }

std::size_t width(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), beginsCharacter));
}

/// The text itself, or its first `columns - 1` characters and an ellipsis.
std::string cut(const std::string& text, std::size_t columns) {
  if (width(text) <= columns) return text;
  if (columns == 0) return {};
  std::size_t characters = 0;
  const auto end = std::find_if(text.begin(), text.end(), [&](char byte) {
    return beginsCharacter(byte) && ++characters == columns;
  });
  return std::string(text.begin(), end) + "…";
}

}  // namespace

std::string Table::text(const Terminal& terminal) const {
  std::vector<std::size_t> widths;
  for (const auto& row : rows_) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t column = 0; column < row.size(); ++column) {
      widths[column] = std::max(widths[column], width(row[column].text));
    }
  }

  std::string lines;
  for (const auto& row : rows_) {
    std::string line;
    std::string blanks(indent, ' ');
    std::size_t used = 0;
    for (std::size_t column = 0; column < row.size(); ++column) {
      const auto& cell = row[column];
      if (!cell.text.empty()) {
        used += blanks.size();
        const auto left = terminal.columns() > used ? terminal.columns() - used : 0;
        const auto shown = cut(cell.text, left);
        if (shown.empty()) break;
        line += blanks + terminal.paint(cell.colour, shown);
        blanks.clear();
        used += width(shown);
      }
      blanks.append(widths[column] - width(cell.text) + gap, ' ');
    }
    lines += line + "\n";
  }
  return lines;
}

}  // namespace hlv::sandbox::tool
