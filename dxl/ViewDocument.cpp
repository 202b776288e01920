// How the content of a view becomes a file:
//   1. Open the view note, and leave the view out when its flags or a missing view format say so.
//   2. Of a view that is no folder, try whether its index is there without building it. When it is
//      not, the next step builds it, and it is dropped at the end: the export leaves the database
//      no larger than it was.
//   3. Open the index, read the columns, and print entry after entry into a temporary file. A read
//      that fails, and an entry behind which no next one can be found, abandon the document.
//   4. Put the complete document under its final name.
// On every way out the index is closed, then dropped if it must be, then the note is closed.
#include "dxl/ViewDocument.h"

#include "dxl/FlagsPattern.h"
#include "dxl/ViewColumns.h"
#include "dxl/ViewEntries.h"
#include "dxl/ViewEntryElement.h"
#include "dxl/XmlDocument.h"
#include "notes/Collections.h"
#include "notes/Notes.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

enum class ViewKind { kView, kFolder, kLeftOut };

ViewKind KindOf(const Note& viewNote) {
  constexpr std::size_t kFlagsCapacity = 100;
  const std::string flags = GetItemText(viewNote, "$Flags", kFlagsCapacity);
  const bool isView = MatchesFlagsPattern(flags, kViewPattern);
  const bool isWanted = isView || MatchesFlagsPattern(flags, kFolderPattern);
  if (!isWanted || !HasItem(viewNote, kViewFormatItem)) return ViewKind::kLeftOut;
  return isView ? ViewKind::kView : ViewKind::kFolder;
}

bool HasIndex(const Database& database, std::uint32_t viewId) {
  Collection existing;
  return OpenExistingCollection(database, viewId, existing).ok();
}

void PurgeOrLog(const Database& database, std::uint32_t viewId) {
  const Status status = PurgeCollection(database, viewId);
  if (status.ok()) return;
  LogDebug(L"Purging collection %x failed", static_cast<unsigned int>(viewId));
  LogStatus(LogLevel::kDebug, L"Error '%s'", status);
}

bool PrintEntries(const EntryBatch& batch, const ViewLayout& layout,
                  tinyxml2::XMLPrinter& printer) {
  ByteReader reader(batch.bytes);
  ViewEntry entry;
  for (std::uint32_t i = 0; i < batch.count; ++i) {
    if (!ReadViewEntry(reader, entry)) return false;
    WriteViewEntry(printer, entry, layout);
  }
  return true;
}

void PrintAndSave(const Collection& collection, const ViewLayout& layout,
                  const std::wstring& path) {
  XmlDocument document;
  const bool isComplete = document.Print([&](tinyxml2::XMLPrinter& printer) {
    printer.OpenElement("view");
    const bool isRead = ReadEntries(
        collection, [&](const EntryBatch& batch) { return PrintEntries(batch, layout, printer); });
    printer.CloseElement();
    return isRead;
  });
  // A failure has its line in the log; the other views go on.
  if (isComplete) static_cast<void>(document.Save(path));
}

void ReadAndSave(const Database& database, std::uint32_t viewId, const Note& viewNote,
                 const notes_api::IntlSettings& numbers, const std::wstring& path) {
  Collection collection;
  if (!OpenCollection(database, viewId, collection).ok()) return;
  PrintAndSave(collection, {ReadViewColumns(viewNote), numbers}, path);
}

}  // namespace

void WriteViewDocument(const Database& database, std::uint32_t viewId,
                       const notes_api::IntlSettings& numbers, const std::wstring& path) {
  Note viewNote;
  if (!OpenNote(database, viewId, viewNote).ok()) return;
  const ViewKind kind = KindOf(viewNote);
  if (kind == ViewKind::kLeftOut) return;
  const bool isPurgeNeeded = kind == ViewKind::kView && !HasIndex(database, viewId);
  try {
    ReadAndSave(database, viewId, viewNote, numbers, path);
  } catch (...) {
    if (isPurgeNeeded) PurgeOrLog(database, viewId);
    throw;
  }
  if (isPurgeNeeded) PurgeOrLog(database, viewId);
}

}  // namespace larkspan
