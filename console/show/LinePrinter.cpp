#include "console/show/LinePrinter.h"

#include <algorithm>

#include "console/show/PlainLine.h"
#include "console/show/StatusLine.h"
#include "console/show/TextWidth.h"

namespace larkspan::console {

namespace {

constexpr std::uint64_t kRedrawMilliseconds = 100;
constexpr std::uint64_t kPlainMilliseconds = 10'000;

std::string Blanks(int count) { return std::string(static_cast<std::size_t>(count), ' '); }

}  // namespace

void LinePrinter::Show(const RunView& view, const Pace& pace, std::uint64_t nowMilliseconds) {
  if (!IsDue(nowMilliseconds)) return;
  if (sink_.IsTerminal())
    Draw(view, pace);
  else
    Write(PlainLine(view, pace) + "\n");
}

// A terminal shows the first status at once, a file has its first line after the first while.
bool LinePrinter::IsDue(std::uint64_t nowMilliseconds) {
  const bool isTerminal = sink_.IsTerminal();
  const bool isFirst = !lastShown_;
  if (isFirst) lastShown_ = nowMilliseconds;
  if (isFirst) return isTerminal;
  const std::uint64_t pause = isTerminal ? kRedrawMilliseconds : kPlainMilliseconds;
  if (nowMilliseconds - *lastShown_ < pause) return false;
  lastShown_ = nowMilliseconds;
  return true;
}

void LinePrinter::Draw(const RunView& view, const Pace& pace) {
  const int width = sink_.Width();
  const StatusText line = StatusLine(view, pace, width, sink_.TakesColours());
  const int rest = ColumnsToCover(width) - line.columns;
  Write("\r" + line.text + Blanks(std::max(rest, 0)));
  status_ = line.text;
  columns_ = line.columns;
  width_ = width;
}

// What is left of an earlier status. Blanks end where the window does, since behind its last column
// a new line begins. Some terminals lay their rows out anew when they get another width, and then
// more than the status can stand in its row.
int LinePrinter::ColumnsToCover(int width) const {
  if (status_.empty()) return 0;
  return width == width_ ? columns_ : std::max(width - 1, 0);
}

void LinePrinter::PrintLine(std::string_view line) {
  Write(Erasure() + SafeForTerminal(line) + "\n" + status_);
}

void LinePrinter::Clear() {
  if (status_.empty()) return;
  Write(Erasure());
  status_.clear();
}

std::string LinePrinter::Erasure() const {
  if (status_.empty()) return {};
  return "\r" + Blanks(ColumnsToCover(sink_.Width())) + "\r";
}

void LinePrinter::Write(const std::string& text) {
  if (!isBroken_) isBroken_ = !sink_.Write(text);
}

}  // namespace larkspan::console
