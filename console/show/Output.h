// Standard output and standard error of the console program: UTF-8 in a file or a pipe, the same
// characters in a terminal, whatever its code page.
#pragma once

#include <windows.h>

#include <string_view>

#include "console/show/LineSink.h"

namespace larkspan::console {

class Output : public LineSink {
 public:
  // STD_OUTPUT_HANDLE or STD_ERROR_HANDLE.
  explicit Output(DWORD standardHandle);

  bool IsTerminal() const override { return isTerminal_; }
  int Width() const override;
  bool TakesColours() const override { return false; }
  bool Write(std::string_view utf8) override;

 private:
  HANDLE handle_;
  bool isTerminal_;
};

}  // namespace larkspan::console
