// Where lines for a person or a program go: a terminal, a file or a pipe.
#pragma once

#include <string_view>

namespace larkspan::console {

class LineSink {
 public:
  virtual ~LineSink() = default;

  virtual bool IsTerminal() const = 0;

  // The width of the terminal's window in columns, as it is now; 80 when it is not known.
  virtual int Width() const = 0;

  // Whether escape sequences colour what is written, and the user has not refused that. To be asked
  // for the first time where a line begins.
  virtual bool TakesColours() = 0;

  // Empties so many rows of a terminal, of which the last is the one that is written to, and goes
  // on at the beginning of the first.
  virtual void EraseRows(int rows) = 0;

  // Writes all of it, without a buffer. False when it could not be: nobody reads any more.
  virtual bool Write(std::string_view utf8) = 0;
};

}  // namespace larkspan::console
