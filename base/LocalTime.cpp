// The C runtime formats, so that the text is the one that administrators of the machine know.
#include "base/LocalTime.h"

#include <array>
#include <cwchar>

namespace larkspan {

std::wstring FormatLocalTime(std::time_t time) {
  std::array<wchar_t, 101> text{};
  const std::tm* local = std::localtime(&time);
  if (local == nullptr) return {};
  const std::size_t length = std::wcsftime(text.data(), text.size(), L"%c %Z", local);
  return std::wstring(text.data(), length);
}

}  // namespace larkspan
