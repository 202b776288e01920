// The C runtime's own formatters, whose names the standard library's headers do not redirect. The
// length is counted first, so that no text is cut that has not been asked to be.
#include "base/WideFormat.h"

#include <cstdio>
#include <cwchar>

namespace larkspan {

namespace {

std::wstring FormatWideV(const wchar_t* format, std::va_list arguments) {
  std::va_list counting;
  va_copy(counting, arguments);
  const int length = _vscwprintf(format, counting);
  va_end(counting);
  if (length <= 0) return {};
  std::wstring text(static_cast<std::size_t>(length), L'\0');
  // The size leaves out the NUL, which the string keeps by itself.
  _vsnwprintf(text.data(), text.size(), format, arguments);
  return text;
}

bool IsHighSurrogate(wchar_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

}  // namespace

std::wstring FormatWide(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::wstring text = FormatWideV(format, arguments);
  va_end(arguments);
  return text;
}

std::string FormatNarrow(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::va_list counting;
  va_copy(counting, arguments);
  const int length = _vscprintf(format, counting);
  va_end(counting);
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  _vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  return text;
}

std::wstring FormatMessageV(const wchar_t* format, std::va_list arguments) {
  return CutKeepingLineEnd(FormatWideV(format, arguments), kMessageCapacity - 1);
}

std::wstring FormatMessageText(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::wstring text = FormatMessageV(format, arguments);
  va_end(arguments);
  return text;
}

std::wstring ErrorText(int error) { return _wcserror(error); }

std::wstring CutKeepingLineEnd(std::wstring text, std::size_t maxLength) {
  if (text.size() <= maxLength) return text;
  const bool endsLine = text.back() == L'\n';
  std::size_t kept = endsLine ? maxLength - 1 : maxLength;
  if (kept > 0 && IsHighSurrogate(text[kept - 1])) --kept;
  text.resize(kept);
  if (endsLine) text.push_back(L'\n');
  return text;
}

}  // namespace larkspan
