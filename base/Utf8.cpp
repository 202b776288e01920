// Lines are cut between two characters: half of one would make the rest of the file unreadable for
// strict readers.
#include "base/Utf8.h"

#include <windows.h>

namespace larkspan {

namespace {

bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

}  // namespace

std::string WideToUtf8(std::wstring_view text) {
  if (text.empty()) return {};
  const int units = static_cast<int>(text.size());
  const int bytes =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), units, utf8.data(), bytes, nullptr, nullptr);
  return utf8;
}

std::string WideLineToUtf8(std::wstring_view line) {
  std::string utf8 = WideToUtf8(line);
  const std::size_t limit = kUtf8LineCapacity - 1;
  if (utf8.size() <= limit) return utf8;
  const bool endsLine = utf8.back() == '\n';
  std::size_t kept = endsLine ? limit - 1 : limit;
  while (kept > 0 && IsContinuation(utf8[kept])) --kept;
  utf8.resize(kept);
  if (endsLine) utf8.push_back('\n');
  return utf8;
}

}  // namespace larkspan
