#include "console/show/Output.h"

#include <algorithm>

#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

bool WriteBytes(HANDLE handle, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    if (!WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) ||
        written == 0)
      return false;
    bytes.remove_prefix(written);
  }
  return true;
}

bool WriteToTerminal(HANDLE handle, std::wstring_view text) {
  // A terminal takes no more than some ten thousand characters at once.
  constexpr std::size_t kAtOnce = 8000;
  while (!text.empty()) {
    DWORD written = 0;
    const auto units = static_cast<DWORD>(text.substr(0, kAtOnce).size());
    if (!WriteConsoleW(handle, text.data(), units, &written, nullptr) || written == 0) return false;
    text.remove_prefix(written);
  }
  return true;
}

}  // namespace

Output::Output(DWORD standardHandle)
    : handle_(GetStdHandle(standardHandle)), isTerminal_(Mode().has_value()) {}

int Output::Width() const {
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (!isTerminal_ || !GetConsoleScreenBufferInfo(handle_, &info)) return 80;
  return info.srWindow.Right - info.srWindow.Left + 1;
}

bool Output::TakesColours() {
  if (!colours_) colours_.emplace(static_cast<TerminalControl&>(*this));
  return colours_->Work();
}

void Output::EraseRows(int rows) {
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (!isTerminal_ || !GetConsoleScreenBufferInfo(handle_, &info)) return;
  const int top = std::max(info.dwCursorPosition.Y - rows + 1, 0);
  const COORD first = {0, static_cast<SHORT>(top)};
  const auto cells = static_cast<DWORD>((info.dwCursorPosition.Y - top + 1) * info.dwSize.X);
  DWORD filled = 0;
  FillConsoleOutputCharacterW(handle_, L' ', cells, first, &filled);
  FillConsoleOutputAttribute(handle_, info.wAttributes, cells, first, &filled);
  SetConsoleCursorPosition(handle_, first);
}

bool Output::Write(std::string_view utf8) {
  return isTerminal_ ? WriteToTerminal(handle_, Utf8ToWide(utf8)) : WriteBytes(handle_, utf8);
}

std::optional<std::uint32_t> Output::Mode() {
  DWORD mode = 0;
  if (!GetConsoleMode(handle_, &mode)) return std::nullopt;
  return mode;
}

bool Output::SetMode(std::uint32_t mode) { return SetConsoleMode(handle_, mode); }

std::optional<int> Output::CursorColumn() {
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (!GetConsoleScreenBufferInfo(handle_, &info)) return std::nullopt;
  return info.dwCursorPosition.X;
}

}  // namespace larkspan::console
