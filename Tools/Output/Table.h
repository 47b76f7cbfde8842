// Rows of cells in aligned columns.
//
// Threading: one thread at a time.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Tools/Output/Terminal.h"

namespace hlv::sandbox::tool {

/// Lines are indented, columns stand two characters apart, and what does not fit on a line of the
/// terminal is cut. Control characters are shown escaped.
class Table {
 public:
  struct Cell {
    Cell(const std::string& content, Colour paint = Colour::plain)
        : text(escaped(content)), colour(paint) {}
    Cell(const char* content) : Cell(std::string(content)) {}
    std::string text;
    Colour colour;
  };
  using Row = std::vector<Cell>;

  void add(Row row) { rows_.push_back(std::move(row)); }
  bool isEmpty() const { return rows_.empty(); }
  std::string text(const Terminal& terminal) const;

 private:
  std::vector<Row> rows_;
};

}  // namespace hlv::sandbox::tool
