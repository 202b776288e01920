#include "report/AuditReport.h"

#include <cstdarg>

#include "base/OutputPaths.h"
#include "base/Settings.h"
#include "base/WideFormat.h"
#include "report/ReportText.h"

namespace larkspan {

namespace {

void AppendFormatted(const std::wstring& outputFolder, const wchar_t* format,
                     std::va_list arguments) {
  AppendReportText(output::Join(outputFolder, output::kAudit), FormatMessageV(format, arguments));
}

}  // namespace

void AuditInFolder(const std::wstring& outputFolder, const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  AppendFormatted(outputFolder, format, arguments);
  va_end(arguments);
}

void Audit(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  AppendFormatted(ProcessSettings().outputFolder, format, arguments);
  va_end(arguments);
}

}  // namespace larkspan
