#include "export/UnidIndex.h"

#include <windows.h>

#include <cstdio>
#include <string>

#include "app/Settings.h"
#include "base/File.h"
#include "base/OutputPaths.h"
#include "notes/Notes.h"

namespace larkspan {

namespace {

std::wstring UnidIndexPath() { return InOutputFolder(output::kUnidIndex); }

}  // namespace

void DeleteUnidIndex() { DeleteFileW(UnidIndexPath().c_str()); }

void AppendUnidLine(const Note& note, std::uint32_t noteId) {
  // Binary, since the line brings its carriage return along.
  const UniqueFile file = OpenFile(UnidIndexPath(), L"ab");
  if (!file) return;
  const notes_api::OriginatorId id = GetOriginatorId(note);
  const auto word = [](std::uint32_t value) { return static_cast<unsigned long>(value); };
  std::fprintf(file.get(), "%08lX,%08lX%08lX%08X%08lX\r\n", word(noteId), word(id.file[1]),
               word(id.file[0]), static_cast<unsigned int>(id.note[1]), word(id.note[0]));
}

}  // namespace larkspan
