// The run log: log.txt in the output folder, the one diagnostic channel of every process of a run.
// Each line is one open, write and close, so a crash loses no line, processes share no handle, and
// any thread may call. A file that cannot be opened makes logging silent; it never fails its
// caller. A message of more than 1023 characters, or a line of more than 1023 bytes in UTF-8, is
// cut.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <string>
#include <string_view>

#include "notes/Status.h"

namespace larkspan {

enum class LogLevel : std::int32_t { kDebug = 0, kWarning = 1, kError = 2 };

// The run log of one output folder, for whoever follows a run that is not this process's own.
class RunLog {
 public:
  // Lines below the minimum level are dropped.
  RunLog(std::wstring outputFolder, LogLevel minimumLevel);

  const std::wstring& outputFolder() const { return outputFolder_; }

  // Writes one line.
  void Write(LogLevel level, std::wstring_view message) const;

  // Format and write one line. "%s" stands for wide text.
  void WriteV(LogLevel level, const wchar_t* format, std::va_list arguments) const;
  void Debug(const wchar_t* format, ...) const;
  void Warning(const wchar_t* format, ...) const;
  void Error(const wchar_t* format, ...) const;

 private:
  std::wstring outputFolder_;
  LogLevel minimumLevel_;
};

// The run log that the settings of this process name.
RunLog ProcessRunLog();

// The same in the process's own run log.
void Log(LogLevel level, std::wstring_view message);
void LogDebug(const wchar_t* format, ...);
void LogWarning(const wchar_t* format, ...);
void LogError(const wchar_t* format, ...);

// Writes a line from a format whose only argument, one "%s", is the text of the status. A caller
// with a note ID as well formats that first, with this "%" doubled.
void LogStatus(LogLevel level, const wchar_t* format, Status status);

}  // namespace larkspan
