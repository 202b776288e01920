#include "console/show/StatusLine.h"

#include <algorithm>
#include <array>

#include "console/show/TextWidth.h"

namespace larkspan::console {

namespace {

constexpr std::string_view kGap = "  ";
constexpr int kGapColumns = 2;

// A name cut to less than this tells nothing.
constexpr int kLeastNameColumns = 12;

constexpr std::string_view kRed = "\x1B[31m";
constexpr std::string_view kPlain = "\x1B[0m";

int ColumnsOfAll(const std::vector<StatusPart>& parts) {
  int columns = 0;
  for (const StatusPart& part : parts) columns += ColumnsOf(part.text) + kGapColumns;
  return columns - kGapColumns;
}

void ShortenToFit(std::vector<StatusPart>& parts, int columns) {
  for (StatusPart& part : parts) {
    if (!part.shorter.empty() && ColumnsOfAll(parts) > columns) part.text = part.shorter;
  }
}

// One after another, the least important first, until the rest fits.
void LeaveOutUntilFit(std::vector<StatusPart>& parts, int columns) {
  const auto lessImportant = [](const StatusPart& left, const StatusPart& right) {
    return left.importance < right.importance;
  };
  while (parts.size() > 1 && ColumnsOfAll(parts) > columns)
    parts.erase(std::max_element(parts.begin(), parts.end(), lessImportant));
  parts.front().text = CutAtTheEnd(parts.front().text, columns);
}

// As wide as what is left for it allows, in steps, so that it does not move with every figure.
std::string Bar(int percent, int columns) {
  constexpr std::array<int, 3> kSteps = {40, 20, 10};
  for (const int cells : kSteps) {
    if (cells + 2 > columns) continue;
    const auto full = static_cast<std::size_t>(cells * percent / 100);
    return "[" + std::string(full, '#') + std::string(static_cast<std::size_t>(cells) - full, '-') +
           "]";
  }
  return {};
}

// Before the figure that it pictures, where that one is shown.
void AddBar(std::vector<StatusPart>& parts, int percent, int columns) {
  const auto figure = std::find_if(parts.begin(), parts.end(), [](const StatusPart& part) {
    return part.importance == Importance::kPercent;
  });
  const std::string bar = Bar(percent, columns);
  if (figure != parts.end() && !bar.empty()) parts.insert(figure, {Importance::kPercent, bar});
}

StatusText Joined(const std::vector<StatusPart>& parts, bool colours) {
  StatusText line;
  for (const StatusPart& part : parts) {
    if (!line.text.empty()) line.text += kGap;
    if (part.isBad && colours)
      line.text.append(kRed).append(part.text).append(kPlain);
    else
      line.text += part.text;
  }
  line.columns = ColumnsOfAll(parts);
  return line;
}

}  // namespace

StatusText StatusLine(const RunView& view, const Pace& pace, int width, bool colours) {
  const int columns = std::max(width - 1, 1);
  std::vector<StatusPart> parts = StatusParts(view, pace);
  // It counts with its least width until it is known what is left for it.
  const std::string name = parts.back().text;
  const bool hasName = parts.back().importance == Importance::kName;
  if (hasName) parts.back().text = CutInTheMiddle(name, kLeastNameColumns);
  ShortenToFit(parts, columns);
  LeaveOutUntilFit(parts, columns);
  if (hasName && parts.back().importance == Importance::kName) {
    const int others = ColumnsOfAll(parts) - ColumnsOf(parts.back().text);
    parts.back().text = CutInTheMiddle(name, columns - others);
  }
  AddBar(parts, PercentOf(view).value_or(0), columns - ColumnsOfAll(parts) - kGapColumns);
  return Joined(parts, colours);
}

}  // namespace larkspan::console
