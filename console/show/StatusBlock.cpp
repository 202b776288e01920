#include "console/show/StatusBlock.h"

#include <algorithm>
#include <utility>

#include "console/show/TextWidth.h"

namespace larkspan::console {

namespace {

// Some terminals lay their rows out anew when they get another width.
int RowsOf(const std::vector<int>& columns, int width) {
  int rows = 0;
  for (const int line : columns) rows += 1 + std::max(line - 1, 0) / std::max(width, 1);
  return rows;
}

}  // namespace

void StatusBlock::Show(const std::vector<StatusText>& lines) {
  std::string text;
  std::vector<int> columns;
  for (const StatusText& line : lines) {
    if (!text.empty()) text += "\n";
    text += line.text;
    columns.push_back(line.columns);
  }
  if (text == text_) return;
  Erase();
  Write(text);
  text_ = std::move(text);
  columns_ = std::move(columns);
}

void StatusBlock::PrintLine(std::string_view line) {
  Erase();
  Write(SafeForTerminal(line) + "\n" + text_);
}

void StatusBlock::Clear() {
  Erase();
  text_.clear();
  columns_.clear();
}

void StatusBlock::Erase() {
  if (!text_.empty()) terminal_.EraseRows(RowsOf(columns_, terminal_.Width()));
}

void StatusBlock::Write(const std::string& text) {
  if (!isBroken_) isBroken_ = !terminal_.Write(text);
}

}  // namespace larkspan::console
