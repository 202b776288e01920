// How one note gets out:
//   1. The class, and the name of a document, choose the file; pictures choose the exporter.
//   2. A form that the exporter cannot read (status 575) is repaired in memory by deleting the
//      items of its fields that are neither text nor formula. Whatever the note, it is exported
//      once more.
//   3. Damaged rich text (1173, or 0x3600 to 0x361F) is exported without images, which is a loss
//      that the run log names; if that fails in the same way, also without conversion.
//   4. In an archive a design note with a body or a view format is written a second time, raw and
//      without its items of type 20.
#include "export/NoteExport.h"

#include <string>
#include <string_view>

#include "base/OutputPaths.h"
#include "base/Settings.h"
#include "export/FilePlacement.h"
#include "notes/Notes.h"
#include "notes/StatusCodes.h"
#include "notes/Text.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

constexpr std::int16_t kPictureRecord = 159;
constexpr std::uint16_t kRawCopyStrippedType = 20;

bool IsProfile(const Note& note) {
  constexpr std::size_t kNameCapacity = 256;
  return FirstEightBytesEqual(GetItemText(note, "$Name", kNameCapacity), "$profile");
}

std::wstring_view ChooseSubfolder(const Note& note) {
  if (!ProcessSettings().archive) return {};
  if (GetNoteClass(note) != kDocumentClass) return output::kDesignFolder;
  return IsProfile(note) ? output::kProfileFolder : output::kDataFolder;
}

bool IsDamagingFieldType(std::uint16_t type) {
  return type != notes_api::kTypeText && type != notes_api::kTypeFormula;
}

void DeleteDamagedFieldItems(const Note& note) {
  constexpr char kFields[] = "$Fields";
  constexpr std::size_t kMaxEntryBytes = 253;
  const std::uint16_t count = CountTextListEntries(note, kFields);
  for (std::uint16_t i = 0; i < count; ++i) {
    const std::string name = "$$" + GetTextListEntry(note, kFields, i, kMaxEntryBytes);
    std::uint16_t type = 0;
    if (GetItemType(note, name, type) && IsDamagingFieldType(type)) DeleteItem(note, name);
  }
}

Status ExportRepaired(const Exporter& exporter, const Note& note, const std::wstring& name) {
  if (GetNoteClass(note) == kFormClass) DeleteDamagedFieldItems(note);
  return ExportNoteToFile(exporter, note, name);
}

Status ExportWithoutImages(const ExporterSet& exporters, const Note& note, std::uint32_t noteId,
                           const std::wstring& name) {
  const Status status = ExportNoteToFile(exporters.noImages, note, name);
  if (status.ok()) {
    LogWarning(L"Minor: Detected corrupt document %08X, exported without images", noteId);
    return status;
  }
  if (!IsDamage(status)) return status;
  return ExportNoteToFile(exporters.noImagesNoConvert, note, name);
}

Status ExportWithFallbacks(const ExporterSet& exporters, const Note& note, std::uint32_t noteId,
                           const std::wstring& name) {
  const Exporter& exporter =
      HasRichTextRecord(note, kPictureRecord) ? exporters.noConvert : exporters.normal;
  Status status = ExportNoteToFile(exporter, note, name);
  if (status == kFormNeedsRepair) status = ExportRepaired(exporter, note, name);
  return IsDamage(status) ? ExportWithoutImages(exporters, note, noteId, name) : status;
}

bool WantsRawCopy(const Note& note) {
  return ProcessSettings().archive && GetNoteClass(note) != kDocumentClass &&
         (HasItem(note, "$Body") || HasItem(note, "$ViewFormat"));
}

Status ExportRawCopy(const Exporter& raw, const Note& note, std::uint32_t noteId) {
  for (const std::string& item : FindItemsOfType(note, kRawCopyStrippedType)) {
    DeleteItem(note, item);
  }
  return ExportNoteToFile(raw, note, output::NoteFile(output::kRawDesignFolder, noteId));
}

}  // namespace

Status ExportNote(const ExporterSet& exporters, const Note& note, std::uint32_t noteId) {
  const std::wstring name = output::NoteFile(ChooseSubfolder(note), noteId);
  const Status status = ExportWithFallbacks(exporters, note, noteId, name);
  if (!status.ok() || !WantsRawCopy(note)) return status;
  return ExportRawCopy(exporters.raw, note, noteId);
}

}  // namespace larkspan
