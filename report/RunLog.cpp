#include "report/RunLog.h"

#include <cstdarg>
#include <string>

#include "app/Settings.h"
#include "base/File.h"
#include "base/OutputPaths.h"
#include "base/Utf8.h"
#include "base/WideFormat.h"
#include "notes/StatusText.h"

namespace larkspan {

namespace {

const wchar_t* LevelWord(LogLevel level) {
  switch (level) {
    case LogLevel::kDebug:
      return L"DEBUG";
    case LogLevel::kWarning:
      return L"WARNING";
    case LogLevel::kError:
      return L"ERROR";
  }
  return L"";
}

}  // namespace

void Log(LogLevel level, std::wstring_view message) {
  const Settings& settings = ProcessSettings();
  if (static_cast<std::int32_t>(level) < settings.minimumLogLevel) return;
  const std::wstring text(message);
  const std::wstring line = FormatMessageText(L"#%s# - %s\n", LevelWord(level), text.c_str());
  AppendToTextFile(InOutputFolder(output::kLog), WideLineToUtf8(line));
}

void LogDebug(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  Log(LogLevel::kDebug, FormatMessageV(format, arguments));
  va_end(arguments);
}

void LogWarning(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  Log(LogLevel::kWarning, FormatMessageV(format, arguments));
  va_end(arguments);
}

void LogError(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  Log(LogLevel::kError, FormatMessageV(format, arguments));
  va_end(arguments);
}

void LogStatus(LogLevel level, const wchar_t* format, Status status) {
  Log(level, FormatMessageText(format, StatusText(status).c_str()));
}

}  // namespace larkspan
