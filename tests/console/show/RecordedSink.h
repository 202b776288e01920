// A terminal, or a file, of which a test sees what is written to it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "console/show/LineSink.h"

namespace larkspan::console {

class RecordedSink : public LineSink {
 public:
  bool IsTerminal() const override { return isTerminal; }
  int Width() const override { return width; }
  bool TakesColours() override { return takesColours; }
  void EraseRows(int rows) override { writes.push_back("<" + std::to_string(rows) + " rows>"); }
  bool Write(std::string_view utf8) override {
    if (isBroken) return false;
    text += utf8;
    writes.emplace_back(utf8);
    return true;
  }

  bool isTerminal = false;
  int width = 80;
  bool takesColours = false;
  bool isBroken = false;
  std::string text;                 // All that was written, ...
  std::vector<std::string> writes;  // ... and piece by piece.
};

}  // namespace larkspan::console
