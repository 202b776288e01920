// Each note goes the same way: marker file, progress line, open, index line, decryption, export,
// close, marker file deleted. The marker names the note for as long as the library works on it, so
// when the library crashes the supervisor knows where to go on.
#include "export/NoteLoop.h"

#include <string>

#include "base/Settings.h"
#include "base/WideFormat.h"
#include "export/NoteExport.h"
#include "export/UnidIndex.h"
#include "notes/IdTables.h"
#include "notes/Identity.h"
#include "notes/Notes.h"
#include "notes/StatusCodes.h"
#include "report/MarkerFile.h"
#include "report/Progress.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

bool IsDesignFailure(Status status) {
  return status == kDesignNotExported || status == kDesignElementNotExported;
}

// The format holds "%08X" for the note ID and "%%s" for the status text.
void LogNoteFailure(const wchar_t* format, std::uint32_t noteId, Status status) {
  LogStatus(LogLevel::kWarning, FormatWide(format, noteId).c_str(), status);
}

Status DecryptIfSealed(const Note& note) {
  if (!IsSealed(note)) return Status();
  const Settings& settings = ProcessSettings();
  if (settings.idFile.empty() || settings.idPassword.empty()) return kNoKeyToDecrypt;
  return DecryptNote(note, settings.idFile, settings.idPassword);
}

// The status decides whether the walk goes on; a failure is logged here.
bool ConcludeNote(Status status, std::uint32_t noteId) {
  if (status.ok()) return true;
  if (IsDesignFailure(status)) {
    LogStatus(LogLevel::kError, L"Unable to export design: %s", status);
    return false;
  }
  LogNoteFailure(L"Major: Error exporting note %08X (%%s)", noteId, status);
  return true;
}

// Handles one note, whose ID the marker file holds. Returns whether the walk goes on.
bool ExportListedNote(const ExporterSet& exporters, const Database& database,
                      std::uint32_t noteId) {
  Note note;
  if (const Status status = OpenNote(database, noteId, note); !status.ok()) {
    LogNoteFailure(L"Major: Error opening note %08X (%%s)", noteId, status);
    DeleteMarkerFile();
    return true;
  }
  if (ProcessSettings().archive) AppendUnidLine(note, noteId);
  if (const Status status = DecryptIfSealed(note); !status.ok()) {
    LogNoteFailure(L"Major: Error decrypting note %08X (%%s)", noteId, status);
    DeleteMarkerFile();
    return true;
  }
  const Status status = ExportNote(exporters, note, noteId);
  note.reset();
  DeleteMarkerFile();
  return ConcludeNote(status, noteId);
}

}  // namespace

bool ExportListedNotes(const ExporterSet& exporters, const Database& database, const IdTable& notes,
                       std::uint32_t resumeNoteId) {
  bool isMarkerWritten = false;
  const ScanEnd end = ScanIds(notes, [&](std::uint32_t noteId) {
    if (noteId <= resumeNoteId) return true;
    isMarkerWritten = WriteMarkerFile(noteId);
    if (!isMarkerWritten) return false;
    if (Progress(L"DOCUMENT: %08X", noteId)) return false;
    return ExportListedNote(exporters, database, noteId);
  });
  // After the last note, and where the walk ends early, no marker is written any more. One that
  // this worker did not write is not its own.
  if (isMarkerWritten) DeleteLastMarkerFile();
  // Without a line the notes behind would be lost silently.
  if (end == ScanEnd::kFailed) LogError(L"Unable to read document list");
  return end == ScanEnd::kEndOfTable;
}

}  // namespace larkspan
