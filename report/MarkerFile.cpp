// Recovery hangs on this file, so writing it is patient: a marker that was not written would let a
// crash pass for the end of the export. A marker that is left half written is deleted, and reading
// takes what is no number for no marker. One that another program holds is waited for as well.
#include "report/MarkerFile.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <string>
#include <utility>

#include "base/FileSystem.h"
#include "base/FolderFiles.h"
#include "base/NoteId.h"
#include "base/OutputPaths.h"
#include "base/Retry.h"
#include "base/WideFormat.h"

namespace larkspan {

namespace {

constexpr int kWriteAttempts = 30;
constexpr int kLastAttempts = 5;
constexpr std::chrono::milliseconds kPause{1000};

std::wstring MarkerPath(const RunLog& log) {
  return output::Join(log.outputFolder(), output::kMarker);
}

// A marker that did not reach the disk in full would make the supervisor take a crash for the end
// of the export, so it counts as a failed attempt like a file that does not open.
bool TryWriteMarker(const std::wstring& path, std::uint32_t noteId) {
  file_system::UniqueFile file = file_system::Open(path, L"w");
  if (!file) return false;
  file_system::Write(file.get(), FormatNarrow("%08X\n", static_cast<unsigned int>(noteId)));
  return file_system::Close(std::move(file));
}

}  // namespace

bool WriteMarkerFile(std::uint32_t noteId, const RunLog& log) {
  const std::wstring path = MarkerPath(log);
  int error = 0;
  const auto attempt = [&] {
    const bool written = TryWriteMarker(path, noteId);
    error = errno;
    return written;
  };
  const auto onRetry = [&](int made) {
    log.Debug(L"Retry WriteMarkerFile (%s): %d", ErrorText(error).c_str(), made);
  };
  if (RetryWithPause(kWriteAttempts, kPause, attempt, onRetry)) return true;
  log.Error(L"WriteMarkerFile failed (%s)", ErrorText(error).c_str());
  DeleteLastMarkerFile(log);
  return false;
}

std::uint32_t ReadMarkerFile(const RunLog& log) {
  const std::wstring path = MarkerPath(log);
  file_system::UniqueFile file;
  const auto attempt = [&] {
    file = file_system::Open(path, L"r");
    return file != nullptr || !HasMarkerFile(log);
  };
  RetryWithPause(kLastAttempts, kPause, attempt, [](int) {});
  if (!file) {
    log.Debug(L"No marker file found");
    return kNoNoteId;
  }
  unsigned int noteId = kNoNoteId;
  // A content that is no number leaves the value as it is, which means that there is no marker.
  if (std::fscanf(file.get(), "%X", &noteId) != 1) noteId = kNoNoteId;
  file.reset();
  log.Debug(L"ReadMarkerFile returned %08X", noteId);
  return noteId;
}

bool HasMarkerFile(const RunLog& log) { return FileExists(MarkerPath(log)); }

void DeleteMarkerFile(const RunLog& log) { file_system::Delete(MarkerPath(log)); }

void DeleteLastMarkerFile(const RunLog& log) {
  const std::wstring path = MarkerPath(log);
  const auto attempt = [&] { return file_system::Delete(path) || !HasMarkerFile(log); };
  RetryWithPause(kLastAttempts, kPause, attempt, [](int) {});
}

}  // namespace larkspan
