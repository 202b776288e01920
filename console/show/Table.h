// A table of columns for a person, as lines of text.
#pragma once

#include <string>
#include <vector>

namespace larkspan::console {

struct TableColumn {
  std::string title;
  bool isNumber = false;  // Stands at the right of its column.
  bool isShortened =
      false;  // Gives way, cut in its middle, when a line is too long for the window.
};

struct Table {
  std::vector<TableColumn> columns;
  std::vector<std::vector<std::string>> rows;  // Each has a text for each column.
};

// The titles and the rows, each line with its end, at most so many columns of a terminal wide where
// the columns that give way allow it; 0: as wide as they are. Texts are made safe for a terminal.
std::string TableText(const Table& table, int width);

}  // namespace larkspan::console
