// The run log: log.txt in the output folder, the one diagnostic channel of every process of a run.
// Each line is one open, write and close, so a crash loses no line, processes share no handle, and
// any thread may call. A file that cannot be opened makes logging silent; it never fails its
// caller. A message of more than 1023 characters, or a line of more than 1023 bytes in UTF-8, is
// cut.
#pragma once

#include <cstdint>
#include <string_view>

#include "notes/Status.h"

namespace larkspan {

enum class LogLevel : std::int32_t { kDebug = 0, kWarning = 1, kError = 2 };

// Writes one line, unless the level is below the minimum level of the settings.
void Log(LogLevel level, std::wstring_view message);

// Formats and writes one line at the level of the name. "%s" stands for wide text.
void LogDebug(const wchar_t* format, ...);
void LogWarning(const wchar_t* format, ...);
void LogError(const wchar_t* format, ...);

// Writes a line from a format whose only argument, one "%s", is the text of the status. A caller
// with a note ID as well formats that first, with this "%" doubled.
void LogStatus(LogLevel level, const wchar_t* format, Status status);

}  // namespace larkspan
