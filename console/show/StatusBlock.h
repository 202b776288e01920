// A few status lines at the bottom of a terminal that are drawn over and over, with whole lines
// above them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "console/show/LineSink.h"
#include "console/show/StatusLine.h"

namespace larkspan::console {

class StatusBlock {
 public:
  explicit StatusBlock(LineSink& terminal) : terminal_(terminal) {}  // Which outlives it.
  ~StatusBlock() { Clear(); }
  StatusBlock(const StatusBlock&) = delete;
  StatusBlock& operator=(const StatusBlock&) = delete;

  // In place of those that are shown. Each fits into the window.
  void Show(const std::vector<StatusText>& lines);

  // A whole line, or some, without the end of the last.
  void PrintLine(std::string_view line);

  // Takes the lines away until they are shown again.
  void Clear();

  // A write failed. Nothing is written since.
  bool IsBroken() const { return isBroken_; }

 private:
  void Erase();
  void Write(const std::string& text);

  LineSink& terminal_;
  std::string text_;          // As it stands on the terminal; empty when nothing does.
  std::vector<int> columns_;  // Of each of its lines.
  bool isBroken_ = false;
};

}  // namespace larkspan::console
