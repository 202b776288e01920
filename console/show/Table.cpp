#include "console/show/Table.h"

#include <algorithm>

#include "console/show/TextWidth.h"

namespace larkspan::console {

namespace {

constexpr int kGapColumns = 2;

// A text cut to less than this tells nothing.
constexpr int kLeastColumns = 8;

using Widths = std::vector<int>;

Widths NaturalWidths(const Table& table) {
  Widths widths;
  for (std::size_t column = 0; column < table.columns.size(); ++column) {
    int widest = ColumnsOf(table.columns[column].title);
    for (const auto& row : table.rows) widest = std::max(widest, ColumnsOf(row[column]));
    widths.push_back(widest);
  }
  return widths;
}

int WholeWidth(const Widths& widths) {
  int whole = -kGapColumns;
  for (const int width : widths) whole += width + kGapColumns;
  return whole;
}

// The widest of those that give way; none when no one can any more.
int* WidestThatGivesWay(const Table& table, Widths& widths) {
  int* widest = nullptr;
  for (std::size_t column = 0; column < widths.size(); ++column) {
    if (!table.columns[column].isShortened || widths[column] <= kLeastColumns) continue;
    if (widest == nullptr || widths[column] > *widest) widest = &widths[column];
  }
  return widest;
}

Widths FittingWidths(const Table& table, int width) {
  Widths widths = NaturalWidths(table);
  for (int tooMany = width > 0 ? WholeWidth(widths) - width : 0; tooMany > 0; --tooMany) {
    int* const widest = WidestThatGivesWay(table, widths);
    if (widest == nullptr) break;
    --*widest;
  }
  return widths;
}

std::string Cell(const std::string& text, int width, bool isNumber) {
  const std::string cut = CutInTheMiddle(text, width);
  const std::string space(static_cast<std::size_t>(std::max(width - ColumnsOf(cut), 0)), ' ');
  return isNumber ? space + cut : cut + space;
}

std::string Line(const std::vector<std::string>& cells) {
  std::string line;
  for (const std::string& cell : cells) {
    if (&cell != &cells.front()) line.append(kGapColumns, ' ');
    line += cell;
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

std::string RowText(const Table& table, const Widths& widths, const std::vector<std::string>& row) {
  std::vector<std::string> cells;
  for (std::size_t column = 0; column < widths.size(); ++column)
    cells.push_back(Cell(row[column], widths[column], table.columns[column].isNumber));
  return Line(cells);
}

}  // namespace

std::string TableText(const Table& table, int width) {
  Table safe = table;
  for (auto& row : safe.rows)
    for (std::string& text : row) text = SafeForTerminal(text);
  const Widths widths = FittingWidths(safe, width);
  std::vector<std::string> titles;
  for (const TableColumn& column : safe.columns) titles.push_back(column.title);
  std::string text = RowText(safe, widths, titles);
  for (const auto& row : safe.rows) text += RowText(safe, widths, row);
  return text;
}

}  // namespace larkspan::console
