// The level is looked at before anything else is done, so that lines nobody wants cost nothing.
#include "report/RunLog.h"

#include <utility>

#include "base/OutputPaths.h"
#include "base/Settings.h"
#include "base/WideFormat.h"
#include "report/ReportText.h"

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

RunLog::RunLog(std::wstring outputFolder, LogLevel minimumLevel)
    : outputFolder_(std::move(outputFolder)), minimumLevel_(minimumLevel) {}

void RunLog::Write(LogLevel level, std::wstring_view message) const {
  if (level < minimumLevel_) return;
  const std::wstring text(message);
  AppendReportText(output::Join(outputFolder_, output::kLog),
                   FormatMessageText(L"#%s# - %s\n", LevelWord(level), text.c_str()));
}

void RunLog::WriteV(LogLevel level, const wchar_t* format, std::va_list arguments) const {
  Write(level, FormatMessageV(format, arguments));
}

void RunLog::Debug(const wchar_t* format, ...) const {
  std::va_list arguments;
  va_start(arguments, format);
  WriteV(LogLevel::kDebug, format, arguments);
  va_end(arguments);
}

void RunLog::Warning(const wchar_t* format, ...) const {
  std::va_list arguments;
  va_start(arguments, format);
  WriteV(LogLevel::kWarning, format, arguments);
  va_end(arguments);
}

void RunLog::Error(const wchar_t* format, ...) const {
  std::va_list arguments;
  va_start(arguments, format);
  WriteV(LogLevel::kError, format, arguments);
  va_end(arguments);
}

RunLog ProcessRunLog() {
  const Settings& settings = ProcessSettings();
  return RunLog(settings.outputFolder, static_cast<LogLevel>(settings.minimumLogLevel));
}

void Log(LogLevel level, std::wstring_view message) { ProcessRunLog().Write(level, message); }

void LogDebug(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  ProcessRunLog().WriteV(LogLevel::kDebug, format, arguments);
  va_end(arguments);
}

void LogWarning(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  ProcessRunLog().WriteV(LogLevel::kWarning, format, arguments);
  va_end(arguments);
}

void LogError(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  ProcessRunLog().WriteV(LogLevel::kError, format, arguments);
  va_end(arguments);
}

}  // namespace larkspan
