// Standard output and standard error of the console program: UTF-8 in a file or a pipe, the same
// characters in a terminal, whatever its code page.
#pragma once

#include <windows.h>

#include <string_view>

namespace larkspan::console {

class Output {
 public:
  // STD_OUTPUT_HANDLE or STD_ERROR_HANDLE.
  explicit Output(DWORD standardHandle);

  bool IsTerminal() const { return isTerminal_; }

  // The width of the terminal's window in columns, as it is now; 80 when it is not known.
  int Width() const;

  // Writes all of it, without a buffer. False when it could not be: nobody reads any more.
  bool Write(std::string_view utf8) const;

 private:
  HANDLE handle_;
  bool isTerminal_;
};

}  // namespace larkspan::console
