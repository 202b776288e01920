// Draws the status of a run: on a terminal as one line that is drawn over and over, with whole
// lines above it; elsewhere as a line now and then. This is the one place that knows which it is.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "console/show/LineSink.h"
#include "console/show/RunView.h"
#include "console/show/StatusParts.h"

namespace larkspan::console {

class LinePrinter {
 public:
  explicit LinePrinter(LineSink& sink) : sink_(sink) {}  // Which outlives it.
  ~LinePrinter() { Clear(); }
  LinePrinter(const LinePrinter&) = delete;
  LinePrinter& operator=(const LinePrinter&) = delete;

  // On a terminal at most ten times a second, elsewhere every ten seconds; in between nothing
  // happens. The time is in milliseconds.
  void Show(const RunView& view, const Pace& pace, std::uint64_t nowMilliseconds);

  // A whole line, or some, without the end of the last.
  void PrintLine(std::string_view line);

  // Takes the status away until it is shown again.
  void Clear();

  // A write failed. Nothing is written since.
  bool IsBroken() const { return isBroken_; }

 private:
  void Draw(const RunView& view, const Pace& pace);
  bool IsDue(std::uint64_t nowMilliseconds);
  int ColumnsToCover(int width) const;
  std::string Erasure() const;
  void Write(const std::string& text);

  LineSink& sink_;
  std::optional<std::uint64_t> lastShown_;
  std::string status_;  // As it stands on the terminal; empty when none does.
  int columns_ = 0;     // Of it, ...
  int width_ = 0;       // ... and of the window when it was drawn.
  bool isBroken_ = false;
};

}  // namespace larkspan::console
