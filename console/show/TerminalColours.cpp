#include "console/show/TerminalColours.h"

#include <windows.h>

#include <string>

namespace larkspan::console {

namespace {

// Mingw's older headers do not have its name.
constexpr std::uint32_t kTakesSequences = 0x0004;

bool IsRefusedByUser() {
  wchar_t first = L'\0';
  // The size that it would need: 1 for an empty text, 0 for none.
  return GetEnvironmentVariableW(L"NO_COLOR", &first, 0) > 1;
}

// A sequence that only resets moves no cursor where it is understood. Elsewhere it is text, which
// is covered again.
bool UnderstandsSequences(TerminalControl& terminal) {
  constexpr std::string_view kReset = "\x1B[0m";
  const std::optional<int> before = terminal.CursorColumn();
  if (before != 0 || !terminal.Write(kReset)) return false;
  const std::optional<int> behind = terminal.CursorColumn();
  if (behind == 0) return true;
  terminal.Write("\r" + std::string(kReset.size(), ' ') + "\r");
  return false;
}

}  // namespace

TerminalColours::TerminalColours(TerminalControl& terminal) : terminal_(terminal) {
  if (!IsRefusedByUser()) TurnOn();
}

TerminalColours::~TerminalColours() {
  if (earlierMode_) terminal_.SetMode(*earlierMode_);
}

void TerminalColours::TurnOn() {
  const std::optional<std::uint32_t> mode = terminal_.Mode();
  if (!mode) return;
  if ((*mode & kTakesSequences) == 0) {
    if (!terminal_.SetMode(*mode | kTakesSequences)) return;
    earlierMode_ = mode;
  }
  const std::optional<std::uint32_t> now = terminal_.Mode();
  work_ = now && (*now & kTakesSequences) != 0 && UnderstandsSequences(terminal_);
}

}  // namespace larkspan::console
