// One open, write and close a line, so that a crash on the note loses no line of it.
#include "export/UnidIndex.h"

#include <string>

#include "base/FileSystem.h"
#include "base/OutputPaths.h"
#include "base/Settings.h"
#include "base/WideFormat.h"
#include "notes/Notes.h"

namespace larkspan {

namespace {

std::wstring UnidIndexPath() { return InOutputFolder(output::kUnidIndex); }

}  // namespace

void DeleteUnidIndex() { file_system::Delete(UnidIndexPath()); }

void AppendUnidLine(const Note& note, std::uint32_t noteId) {
  // Binary, since the line brings its carriage return along.
  const file_system::UniqueFile file = file_system::Open(UnidIndexPath(), L"ab");
  if (!file) return;
  const notes_api::OriginatorId id = GetOriginatorId(note);
  const auto word = [](std::uint32_t value) { return static_cast<unsigned long>(value); };
  file_system::Write(
      file.get(),
      FormatNarrow("%08lX,%08lX%08lX%08X%08lX\r\n", word(noteId), word(id.file[1]),
                   word(id.file[0]), static_cast<unsigned int>(id.note[1]), word(id.note[0])));
}

}  // namespace larkspan
