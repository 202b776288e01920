#include "dxl/StagedFile.h"

#include <windows.h>

#include <chrono>

#include "app/Settings.h"
#include "base/OutputPaths.h"
#include "base/Retry.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

constexpr int kAttempts = 5;
constexpr std::chrono::milliseconds kPause{1000};

template <typename Operation>
bool Attempt(const wchar_t* name, Operation operation) {
  return RetryWithPause(kAttempts, kPause, operation,
                        [&](int made) { LogDebug(L"Retrying %s: %d", name, made); });
}

bool TryDelete() {
  return DeleteFileW(StagedFilePath().c_str()) != 0 || GetLastError() == ERROR_FILE_NOT_FOUND;
}

bool TryMove(const std::wstring& path, EarlierFile earlier) {
  const DWORD replacing = earlier == EarlierFile::kIsReplaced ? MOVEFILE_REPLACE_EXISTING : 0;
  return MoveFileExW(StagedFilePath().c_str(), path.c_str(), MOVEFILE_COPY_ALLOWED | replacing) !=
         0;
}

}  // namespace

std::wstring StagedFilePath() {
  return InOutputFolder(std::wstring(L"\\") + output::kTemporaryName);
}

Status ClearStagedFile() {
  if (Attempt(L"delete DXL temporary file", TryDelete)) return Status();
  LogWarning(L"Unable to delete DXL temporary file (tried retry)");
  return kTemporaryFileNotDeleted;
}

void DeleteStagedFile() { TryDelete(); }

Status PlaceStagedFile(const std::wstring& path, EarlierFile earlier) {
  if (Attempt(L"move DXL file into place", [&] { return TryMove(path, earlier); })) return Status();
  DeleteStagedFile();
  LogWarning(L"Unable to move DXL file into place (tried retry)");
  return kFileNotMoved;
}

}  // namespace larkspan
