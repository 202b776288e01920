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

bool IsExported(const Note& viewNote, bool& isFolder) {
  constexpr std::size_t kFlagsCapacity = 100;
  const std::string flags = GetItemText(viewNote, "$Flags", kFlagsCapacity);
  isFolder = !MatchesFlagsPattern(flags, kViewPattern);
  return (!isFolder || MatchesFlagsPattern(flags, kFolderPattern)) &&
         HasItem(viewNote, kViewFormatItem);
}

// Knows whether a view's index is to be dropped after the export: unless it was there before.
class IndexPurge {
 public:
  IndexPurge(const LibraryFunctions& functions, const Database& database, std::uint32_t viewId)
      : functions_(functions), database_(database), viewId_(viewId) {}
  void PurgeUnlessIndexExists() {
    Collection existing;
    isNeeded_ = !OpenExistingCollection(database_, viewId_, existing).ok();
  }

  void Run() const {
    if (!isNeeded_) return;
    const Status status = PurgeCollection(functions_, database_, viewId_);
    if (status.ok()) return;
    LogDebug(L"Purging collection %x failed", static_cast<unsigned int>(viewId_));
    LogStatus(LogLevel::kDebug, L"Error '%s'", status);
  }

 private:
  const LibraryFunctions& functions_;
  const Database& database_;
  const std::uint32_t viewId_;
  bool isNeeded_ = false;
};

bool PrintEntries(const EntryBatch& batch, const ViewColumns& columns,
                  tinyxml2::XMLPrinter& printer) {
  ByteReader reader(batch.bytes);
  ViewEntry entry;
  for (std::uint32_t i = 0; i < batch.count; ++i) {
    if (!ReadViewEntry(reader, entry)) return false;
    WriteViewEntry(printer, entry, columns);
  }
  return true;
}

void PrintAndSave(const Collection& collection, const ViewColumns& columns,
                  const std::wstring& path) {
  XmlDocument document;
  document.printer().OpenElement("view");
  const bool complete =
      !document.HasFile() || ReadEntries(collection, [&](const EntryBatch& batch) {
        return PrintEntries(batch, columns, document.printer());
      });
  if (!complete) return;
  document.printer().CloseElement();
  // A failure has its line in the log; the other views go on.
  static_cast<void>(document.Save(path));
}

void ReadAndSave(const Database& database, std::uint32_t viewId, const Note& viewNote,
                 const std::wstring& path) {
  Collection collection;
  if (!OpenCollection(database, viewId, collection).ok()) return;
  PrintAndSave(collection, ReadViewColumns(viewNote), path);
}

}  // namespace

void WriteViewDocument(const LibraryFunctions& functions, const Database& database,
                       std::uint32_t viewId, const std::wstring& path) {
  Note viewNote;
  if (!OpenNote(database, viewId, viewNote).ok()) return;
  bool isFolder = false;
  if (!IsExported(viewNote, isFolder)) return;
  IndexPurge purge(functions, database, viewId);
  if (!isFolder) purge.PurgeUnlessIndexExists();
  try {
    ReadAndSave(database, viewId, viewNote, path);
  } catch (...) {
    purge.Run();
    throw;
  }
  purge.Run();
}

}  // namespace larkspan
