// The closing block counts what the run has left in its folder, in the order in which its lines
// stand; nothing of it is remembered from the run itself, since several workers made it.
#include "supervision/AuditBlocks.h"

#include <cstdint>
#include <string>

#include "base/FolderFiles.h"
#include "base/HexNumberFile.h"
#include "base/LocalTime.h"
#include "base/OutputPaths.h"
#include "report/AuditReport.h"
#include "supervision/LogCounts.h"

namespace larkspan {

namespace {

struct ExportedCounts {
  int data = 0;
  int design = 0;
  int profile = 0;
  int Total() const { return data + design + profile; }
};

int CountInputDocuments(const RunLog& log) {
  int count = 0;
  const auto countOne = [&](std::uint32_t) {
    ++count;
    return true;
  };
  switch (ReadHexNumberFile(output::Join(log.outputFolder(), output::kIdTable), countOne)) {
    case HexNumberFileEnd::kEndOfFile:
      log.Debug(L"CountInputDocuments succeeded (%d)", count);
      return count;
    case HexNumberFileEnd::kNotOpened:
      log.Debug(L"CountInputDocuments fopen failed");
      return 0;
    default:
      log.Debug(L"CountInputDocuments terminated read before EOF");
      return 0;
  }
}

ExportedCounts CountExportedFiles(const std::wstring& folder) {
  return {CountFiles(output::Join(folder, output::kDataFolder)),
          CountFiles(output::Join(folder, output::kDesignFolder)),
          CountFiles(output::Join(folder, output::kProfileFolder))};
}

void AuditTimes(const std::wstring& folder, std::time_t startTime) {
  const std::time_t now = std::time(nullptr);
  AuditInFolder(folder, L"Archive ended at: %s\n", FormatLocalTime(now).c_str());
  AuditInFolder(folder, L"Total runtime (seconds): %0.2f\n", std::difftime(now, startTime));
}

void AuditExportedFiles(const std::wstring& folder, const ExportedCounts& exported) {
  AuditInFolder(folder, L"Exported Document Counts\n");
  AuditInFolder(folder, L"Data   : %8d\n", exported.data);
  AuditInFolder(folder, L"Design : %8d\n", exported.design);
  AuditInFolder(folder, L"Profile: %8d\n", exported.profile);
  AuditInFolder(folder, L"Exported total documents : %8d\n", exported.Total());
}

}  // namespace

void WriteAuditBegin(std::time_t startTime, const RunLog& log) {
  AuditInFolder(log.outputFolder(), L"Archive started at: %s\n",
                FormatLocalTime(startTime).c_str());
}

void WriteAuditEnd(std::time_t startTime, const RunLog& log) {
  const std::wstring& folder = log.outputFolder();
  AuditTimes(folder, startTime);
  const int expected = CountInputDocuments(log);
  AuditInFolder(folder, L"Database total documents : %8d\n", expected);
  const ExportedCounts exported = CountExportedFiles(folder);
  AuditExportedFiles(folder, exported);
  const LoggedCounts logged = CountLoggedDocuments(folder);
  AuditInFolder(folder, L"Failed total documents   : %8d\n", logged.failed);
  const int processed = logged.failed + exported.Total();
  AuditInFolder(folder, L"Total documents processed: %8d\n", processed);
  if (processed != expected) {
    log.Warning(L"Document count mismatch: expected %d but only found %d", expected, processed);
  }
  AuditInFolder(folder, L"Documents exported with warnings : %8d\n", logged.warnings);
  if (logged.failed + logged.warnings != 0) {
    AuditInFolder(folder,
                  L"Some documents were not exported successfully. See log.txt for details.\n");
  }
}

}  // namespace larkspan
