// The product's formatting for targets that are not Windows programs. In a wide format "%s" is
// narrow text here, so nothing but numbers may stand in one.
#include <array>
#include <cstdio>
#include <cstring>
#include <cwchar>

#include "base/WideFormat.h"

namespace larkspan {

namespace {

constexpr std::size_t kCapacity = 256;

}  // namespace

std::wstring FormatWide(const wchar_t* format, ...) {
  std::array<wchar_t, kCapacity> text{};
  std::va_list arguments;
  va_start(arguments, format);
  std::vswprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  return text.data();
}

std::string FormatNarrow(const char* format, ...) {
  std::array<char, kCapacity> text{};
  std::va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  return length < 0 ? std::string() : std::string(text.data());
}

std::wstring ErrorText(int error) {
  const std::string_view text = std::strerror(error);
  return std::wstring(text.begin(), text.end());
}

}  // namespace larkspan
