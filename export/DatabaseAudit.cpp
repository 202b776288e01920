// Texts that the library hands over are checked against what it can hand over at all: a longer one
// means damaged memory, and the process ends before the text is used.
#include "export/DatabaseAudit.h"

#include <cstdint>
#include <string_view>

#include "base/BoundsCheck.h"
#include "base/Settings.h"
#include "notes/Properties.h"
#include "notes/Text.h"
#include "report/AuditReport.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

// Translates for a buffer of 512 characters. The library never hands out server and file names
// longer than half of that.
std::wstring TranslateForAudit(std::string_view text) {
  constexpr std::size_t kBufferBytes = 512 * sizeof(wchar_t);
  constexpr std::size_t kFirstBytesOutOfBounds = 514;
  std::wstring wide = NotesToWide(text, kBufferBytes);
  if (wide.size() * sizeof(wchar_t) >= kFirstBytesOutOfBounds) EndForBoundsViolation();
  return wide;
}

void AuditSize(const wchar_t* label, const std::string& databasePath) {
  std::uint64_t bytes = 0;
  const Status status = GetDatabaseSize(databasePath, bytes);
  if (status.ok()) {
    Audit(L"%s: %llu\n", label, static_cast<unsigned long long>(bytes));
    return;
  }
  Audit(L"%s: unavailable\n", label);
  LogStatus(LogLevel::kWarning, L"Unable to read database quota (%s)", status);
}

}  // namespace

void AuditDatabase(const Database& database) {
  DatabaseLocation location;
  const Status status = GetDatabaseLocation(database, location);
  if (!status.ok()) LogStatus(LogLevel::kWarning, L"Unable to read database location (%s)", status);
  const std::wstring server = TranslateForAudit(location.server);
  const std::wstring file = TranslateForAudit(location.file);
  Audit(L"Archive database server: %s\n", server.c_str());
  Audit(L"Archive database path  : %s\n", file.c_str());
  Audit(ProcessSettings().fullAccess ? L"Archive with full access admin\n"
                                     : L"Archive without full access admin\n");
}

void AuditSizeBefore(const std::string& databasePath) {
  AuditSize(L"Database size before archive", databasePath);
}

// The trailing blank aligns the colons of the two lines.
void AuditSizeAfter(const std::string& databasePath) {
  AuditSize(L"Database size after archive ", databasePath);
}

}  // namespace larkspan
