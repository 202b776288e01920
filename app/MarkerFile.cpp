#include "app/MarkerFile.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include "app/Settings.h"
#include "base/File.h"
#include "base/FileSystem.h"
#include "base/OutputPaths.h"
#include "base/Retry.h"
#include "base/WideFormat.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

constexpr int kWriteAttempts = 30;
constexpr std::chrono::milliseconds kWritePause{1000};

std::wstring MarkerPath() { return InOutputFolder(output::kMarker); }

// A marker that did not reach the disk in full would make the supervisor take a crash for the end
// of the export, so it counts as a failed attempt like a file that does not open.
bool TryWriteMarker(std::uint32_t noteId) {
  UniqueFile file = OpenFile(MarkerPath(), L"w");
  if (!file) return false;
  file_system::Write(file.get(), FormatNarrow("%08X\n", static_cast<unsigned int>(noteId)));
  return CloseFile(std::move(file));
}

}  // namespace

bool WriteMarkerFile(std::uint32_t noteId) {
  int error = 0;
  const auto attempt = [&] {
    const bool written = TryWriteMarker(noteId);
    error = errno;
    return written;
  };
  const auto onRetry = [&](int made) {
    LogDebug(L"Retry WriteMarkerFile (%s): %d", ErrorText(error).c_str(), made);
  };
  if (RetryWithPause(kWriteAttempts, kWritePause, attempt, onRetry)) return true;
  LogError(L"WriteMarkerFile failed (%s)", ErrorText(error).c_str());
  DeleteMarkerFile();
  return false;
}

std::uint32_t ReadMarkerFile() {
  UniqueFile file = OpenFile(MarkerPath(), L"r");
  if (!file) {
    LogDebug(L"No marker file found");
    return kNoNoteId;
  }
  unsigned int noteId = kNoNoteId;
  // A content that is no number leaves the value as it is, which means that there is no marker.
  if (std::fscanf(file.get(), "%X", &noteId) != 1) noteId = kNoNoteId;
  file.reset();
  LogDebug(L"ReadMarkerFile returned %08X", noteId);
  return noteId;
}

bool HasMarkerFile() {
  std::error_code unknown;
  return std::filesystem::exists(MarkerPath(), unknown);
}

void DeleteMarkerFile() { file_system::Delete(MarkerPath()); }

}  // namespace larkspan
