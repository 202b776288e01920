// Standard output and standard error of the console program: UTF-8 in a file or a pipe, the same
// characters in a terminal, whatever its code page.
#pragma once

#include <windows.h>

#include <optional>
#include <string_view>

#include "console/show/LineSink.h"
#include "console/show/TerminalColours.h"

namespace larkspan::console {

class Output : public LineSink, private TerminalControl {
 public:
  // STD_OUTPUT_HANDLE or STD_ERROR_HANDLE.
  explicit Output(DWORD standardHandle);
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  bool IsTerminal() const override { return isTerminal_; }
  int Width() const override;

  // Asks the terminal at the first call, which is to come where a line begins.
  bool TakesColours() override;

  void EraseRows(int rows) override;

  bool Write(std::string_view utf8) override;

 private:
  std::optional<std::uint32_t> Mode() override;
  bool SetMode(std::uint32_t mode) override;
  std::optional<int> CursorColumn() override;

  HANDLE handle_;
  bool isTerminal_;
  std::optional<TerminalColours> colours_;
};

}  // namespace larkspan::console
