#include "report/AuditReport.h"

#include <cstdarg>
#include <cstdint>
#include <string>

#include "app/Settings.h"
#include "base/CountFiles.h"
#include "base/File.h"
#include "base/HexNumberFile.h"
#include "base/LocalTime.h"
#include "base/OutputPaths.h"
#include "base/Utf8.h"
#include "base/WideFormat.h"
#include "report/LogCounts.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

struct ExportedCounts {
  int data = 0;
  int design = 0;
  int profile = 0;
  int Total() const { return data + design + profile; }
};

int CountInputDocuments() {
  int count = 0;
  const auto countOne = [&](std::uint32_t) {
    ++count;
    return true;
  };
  switch (ReadHexNumberFile(InOutputFolder(output::kIdTable), countOne)) {
    case HexNumberFileEnd::kEndOfFile:
      LogDebug(L"CountInputDocuments succeeded (%d)", count);
      return count;
    case HexNumberFileEnd::kNotOpened:
      LogDebug(L"CountInputDocuments fopen failed");
      return 0;
    default:
      LogDebug(L"CountInputDocuments terminated read before EOF");
      return 0;
  }
}

ExportedCounts CountExportedFiles() {
  return {CountFiles(InOutputFolder(output::kDataFolder)),
          CountFiles(InOutputFolder(output::kDesignFolder)),
          CountFiles(InOutputFolder(output::kProfileFolder))};
}

void AuditTimes(std::time_t startTime) {
  const std::time_t now = std::time(nullptr);
  Audit(L"Archive ended at: %s\n", FormatLocalTime(now).c_str());
  Audit(L"Total runtime (seconds): %0.2f\n", std::difftime(now, startTime));
}

void AuditExportedFiles(const ExportedCounts& exported) {
  Audit(L"Exported Document Counts\n");
  Audit(L"Data   : %8d\n", exported.data);
  Audit(L"Design : %8d\n", exported.design);
  Audit(L"Profile: %8d\n", exported.profile);
  Audit(L"Exported total documents : %8d\n", exported.Total());
}

}  // namespace

void Audit(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const std::wstring text = FormatMessageV(format, arguments);
  va_end(arguments);
  AppendToTextFile(InOutputFolder(output::kAudit), WideLineToUtf8(text));
}

void WriteAuditEnd(std::time_t startTime) {
  AuditTimes(startTime);
  const int expected = CountInputDocuments();
  Audit(L"Database total documents : %8d\n", expected);
  const ExportedCounts exported = CountExportedFiles();
  AuditExportedFiles(exported);
  const LoggedCounts logged = CountLoggedDocuments();
  Audit(L"Failed total documents   : %8d\n", logged.failed);
  const int processed = logged.failed + exported.Total();
  Audit(L"Total documents processed: %8d\n", processed);
  if (processed != expected) {
    LogWarning(L"Document count mismatch: expected %d but only found %d", expected, processed);
  }
  Audit(L"Documents exported with warnings : %8d\n", logged.warnings);
  if (logged.failed + logged.warnings != 0) {
    Audit(L"Some documents were not exported successfully. See log.txt for details.\n");
  }
}

}  // namespace larkspan
