#include "console/text/Utf.h"

#include <windows.h>

#include <array>
#include <cstdio>

namespace larkspan::console {

bool IsUtf8(std::string_view bytes) {
  return bytes.empty() || MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(),
                                              static_cast<int>(bytes.size()), nullptr, 0) > 0;
}

std::wstring Utf8ToWide(std::string_view text) {
  if (text.empty()) return {};
  const int bytes = static_cast<int>(text.size());
  const int units = MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(units), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), units);
  return wide;
}

bool IsSameName(std::wstring_view one, std::wstring_view other) {
  return CompareStringOrdinal(one.data(), static_cast<int>(one.size()), other.data(),
                              static_cast<int>(other.size()), TRUE) == CSTR_EQUAL;
}

std::wstring UpperCase(std::wstring text) {
  CharUpperBuffW(text.data(), static_cast<DWORD>(text.size()));
  return text;
}

std::string NoteIdText(std::uint32_t id) {
  std::array<char, 9> digits;
  std::snprintf(digits.data(), digits.size(), "%08X", static_cast<unsigned>(id));
  return digits.data();
}

std::string UtcNow() {
  SYSTEMTIME now;
  GetSystemTime(&now);
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "%04u-%02u-%02uT%02u:%02u:%02uZ", now.wYear, now.wMonth,
                now.wDay, now.wHour, now.wMinute, now.wSecond);
  return text.data();
}

}  // namespace larkspan::console
