// Whether a terminal turns escape sequences into colours. Old ones show them as text, and some say
// that they do not, so this one is asked to take them, and then seen to.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace larkspan::console {

// What is asked of a terminal; a test has one without a window.
class TerminalControl {
 public:
  virtual ~TerminalControl() = default;

  virtual std::optional<std::uint32_t> Mode() = 0;  // None: it is no terminal.
  virtual bool SetMode(std::uint32_t mode) = 0;
  virtual std::optional<int> CursorColumn() = 0;
  virtual bool Write(std::string_view ascii) = 0;
};

// Turns colours on for as long as it lives, unless the environment variable NO_COLOR has a text.
class TerminalColours {
 public:
  explicit TerminalColours(TerminalControl& terminal);  // Which outlives it.
  ~TerminalColours();                                   // The terminal is as it was.
  TerminalColours(const TerminalColours&) = delete;
  TerminalColours& operator=(const TerminalColours&) = delete;

  bool Work() const { return work_; }

 private:
  void TurnOn();

  TerminalControl& terminal_;
  std::optional<std::uint32_t> earlierMode_;  // When it was changed.
  bool work_ = false;
};

}  // namespace larkspan::console
