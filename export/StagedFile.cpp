// Waiting is for what another program holds for a moment; a missing file is as good as a deleted
// one and costs no attempt.
#include "export/StagedFile.h"

#include <windows.h>

#include <chrono>

#include "base/FileSystem.h"
#include "base/OutputPaths.h"
#include "base/Retry.h"
#include "base/Settings.h"
#include "notes/StatusCodes.h"
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
  return file_system::Delete(StagedFilePath()) || GetLastError() == ERROR_FILE_NOT_FOUND;
}

}  // namespace

std::wstring StagedFilePath() { return InOutputFolder(output::kTemporary); }

Status ClearStagedFile() {
  if (Attempt(L"delete DXL temporary file", TryDelete)) return Status();
  LogWarning(L"Unable to delete DXL temporary file (tried retry)");
  return kTemporaryFileNotDeleted;
}

void DeleteStagedFile() { TryDelete(); }

Status PlaceStagedFile(const std::wstring& path) {
  if (Attempt(L"move DXL file into place", [&] {
        return file_system::Move(StagedFilePath(), path, file_system::Earlier::kStays);
      })) {
    return Status();
  }
  DeleteStagedFile();
  LogWarning(L"Unable to move DXL file into place (tried retry)");
  return kFileNotMoved;
}

}  // namespace larkspan
