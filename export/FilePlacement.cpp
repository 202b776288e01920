// How a file gets to its final name:
//   1. Delete what an earlier worker left in temp.tmp when it crashed; a missing file is as good.
//   2. Run the export. Its output callback opens temp.tmp, appends the chunk and closes it again,
//      so nothing stays open between chunks. A chunk that cannot be written sets a flag, and the
//      rest of the export is dropped.
//   3. When the flag is set or the export failed: delete temp.tmp and return why.
//   4. Move temp.tmp to the final name. The move never replaces a file, so that no earlier export
//      is ever overwritten.
#include "export/FilePlacement.h"

#include <cstdio>
#include <string>
#include <utility>

#include "app/Settings.h"
#include "base/File.h"
#include "base/FileSystem.h"
#include "base/OutputPaths.h"
#include "dxl/StagedFile.h"
#include "notes/DxlExporter.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

bool writeFailed = false;

std::wstring BareNamePath(const wchar_t* name) {
  return InOutputFolder(std::wstring(L"\\") + name);
}

// Unbuffered, so that a full disk shows in the number of bytes written.
void WriteChunk(std::string_view chunk, const wchar_t* name) {
  UniqueFile file = OpenFile(BareNamePath(name), L"a");
  if (!file) {
    LogDebug(L"Unable to open temp file for writing: %s", name);
    writeFailed = true;
    return;
  }
  std::setvbuf(file.get(), nullptr, _IONBF, 0);
  const std::size_t written = file_system::Write(file.get(), chunk);
  if (written < chunk.size()) {
    LogDebug(L"Only wrote %u bytes of %u to temp file: %s", static_cast<unsigned int>(written),
             static_cast<unsigned int>(chunk.size()), name);
    writeFailed = true;
  }
  if (!CloseFile(std::move(file))) writeFailed = true;
}

// The library's code stands between this function and its caller, so no exception may pass.
extern "C" void LARKSPAN_NOTES_CALL WriteOutput(const notes_api::BYTE* buffer,
                                                notes_api::DWORD length, void* context) noexcept {
  if (writeFailed) return;
  try {
    WriteChunk({reinterpret_cast<const char*>(buffer), length},
               static_cast<const wchar_t*>(context));
  } catch (...) {
    writeFailed = true;
  }
}

// The status of the export, or that of its output.
template <typename Export>
Status ExportToTemporaryFile(Export runExport) {
  writeFailed = false;
  std::wstring name = output::kTemporaryName;
  const Status status = runExport(WriteOutput, name.data());
  return writeFailed ? kOutputNotWritten : status;
}

template <typename Export>
Status ExportToFile(std::wstring_view relativeName, Export runExport) {
  if (const Status status = ClearStagedFile(); !status.ok()) return status;
  if (const Status status = ExportToTemporaryFile(runExport); !status.ok()) {
    DeleteStagedFile();
    return status;
  }
  return PlaceStagedFile(InOutputFolder(relativeName), file_system::Earlier::kStays);
}

}  // namespace

Status ExportNoteToFile(const Exporter& exporter, const Note& note,
                        std::wstring_view relativeName) {
  return ExportToFile(relativeName, [&](notes_api::DxlOutputCallback output, void* context) {
    return ExportNoteDxl(exporter, output, note, context);
  });
}

Status ExportAclToFile(const Exporter& exporter, const Database& database) {
  return ExportToFile(output::kAcl, [&](notes_api::DxlOutputCallback output, void* context) {
    return ExportAclDxl(exporter, output, database, context);
  });
}

}  // namespace larkspan
