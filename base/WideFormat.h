// Formatting of wide text with the C runtime's own rules, in which "%s" in a wide format is wide
// text. The standard library's headers give the printf family another meaning here, so all wide
// formatting goes through these functions.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <string>
#include <string_view>

namespace larkspan {

// Size of a message buffer in wide characters, its terminating NUL included.
inline constexpr std::size_t kMessageCapacity = 1024;

// Formats into a text of any length.
std::wstring FormatWide(const wchar_t* format, ...);

// Formats into narrow text of any length; "%S" stands for wide text here. Empty when a wide
// character has no narrow form.
std::string FormatNarrow(const char* format, ...);

// Formats into at most kMessageCapacity - 1 characters. A longer result is cut; a line end at the
// end of the text survives the cut, so that a cut line never runs into the next one.
std::wstring FormatMessageV(const wchar_t* format, std::va_list arguments);
std::wstring FormatMessageText(const wchar_t* format, ...);

// The C runtime's words for an error number of errno.
std::wstring ErrorText(int error);

// Cuts text to maxLength characters, but keeps a line end that stands at its end. maxLength is at
// least 1.
std::wstring CutKeepingLineEnd(std::wstring text, std::size_t maxLength);

}  // namespace larkspan
