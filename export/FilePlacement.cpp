// How a file gets to its final name:
//   1. Delete what an earlier worker left in temp.tmp when it crashed; a missing file is as good.
//   2. Run the export. For each chunk that it hands out temp.tmp is opened, appended to and closed,
//      so nothing stays open between chunks. A chunk that cannot be written sets a flag, and the
//      rest of the export is dropped.
//   3. When the flag is set or the export failed: delete temp.tmp and return why.
//   4. Move temp.tmp to the final name. The move never replaces a file, so that no earlier export
//      is ever overwritten; a name that is taken costs five attempts and the four pauses between.
#include "export/FilePlacement.h"

#include <cstddef>
#include <string>

#include "base/FileSystem.h"
#include "base/LineEnds.h"
#include "base/OutputPaths.h"
#include "base/Settings.h"
#include "export/StagedFile.h"
#include "notes/DxlExporter.h"
#include "notes/StatusCodes.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

// temp.tmp without the backslash, as messages name it.
constexpr const wchar_t* kBareName = output::kTemporary + 1;

// How many bytes of the chunk are in the first bytes of it with its line ends.
std::size_t BytesBeforeLineEnds(std::string_view chunk, std::size_t linesWritten) {
  std::size_t taken = 0;
  for (std::size_t place = 0; taken < chunk.size(); ++taken) {
    place += chunk[taken] == '\n' ? 2 : 1;
    if (place > linesWritten) break;
  }
  return taken;
}

// A chunk with its line ends is one write of the system, in which a full disk shows. Through a
// stream of the C runtime it could be several. `lines` is room for it.
bool AppendChunk(std::string_view chunk, std::string& lines) {
  lines.clear();
  AppendWithCarriageReturns(chunk, lines);
  const file_system::Appended appended = file_system::Append(StagedFilePath(), lines);
  if (!appended.opened) {
    LogDebug(L"Unable to open temp file for writing: %s", kBareName);
    return false;
  }
  if (appended.written < lines.size()) {
    const std::size_t written = BytesBeforeLineEnds(chunk, appended.written);
    LogDebug(L"Only wrote %u bytes of %u to temp file: %s", static_cast<unsigned int>(written),
             static_cast<unsigned int>(chunk.size()), kBareName);
  } else if (!appended.complete) {
    LogDebug(L"Unable to close temp file: %s", kBareName);
  }
  return appended.complete;
}

// Takes the chunks of one export until one cannot be written; the others are dropped. They share
// the room for their lines: new memory for each would cost more than to fill it.
class TemporaryOutput {
 public:
  void Write(std::string_view chunk) {
    if (writeFailed_) return;
    try {
      writeFailed_ = !AppendChunk(chunk, lines_);
    } catch (...) {
      writeFailed_ = true;
    }
  }

  // The status of the export, or that of its output.
  Status Conclude(Status status) const { return writeFailed_ ? kOutputNotWritten : status; }

 private:
  std::string lines_;
  bool writeFailed_ = false;
};

// The export is called with the output's name and with what takes its chunks.
template <typename Export>
Status ExportToFile(std::wstring_view relativeName, Export runExport) {
  if (const Status status = ClearStagedFile(); !status.ok()) return status;
  TemporaryOutput output;
  const Status exported =
      runExport(kBareName, [&](std::string_view chunk) { output.Write(chunk); });
  if (const Status status = output.Conclude(exported); !status.ok()) {
    DeleteStagedFile();
    return status;
  }
  return PlaceStagedFile(InOutputFolder(relativeName));
}

}  // namespace

Status ExportNoteToFile(const Exporter& exporter, const Note& note,
                        std::wstring_view relativeName) {
  return ExportToFile(relativeName, [&](std::wstring_view outputName, const DxlVisitor& visit) {
    return ExportNoteDxl(exporter, note, outputName, visit);
  });
}

Status ExportAclToFile(const Exporter& exporter, const Database& database) {
  return ExportToFile(output::kAcl, [&](std::wstring_view outputName, const DxlVisitor& visit) {
    return ExportAclDxl(exporter, database, outputName, visit);
  });
}

}  // namespace larkspan
