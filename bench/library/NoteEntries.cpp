// Notes are data documents without items, views have a format. The exporter hands out chunks that
// were made before.
#include <windows.h>

#include <cstring>
#include <string_view>

#include "bench/Content.h"
#include "bench/library/Entries.h"

namespace larkspan::notes_api {

using bench::kNotHere;
using bench::kSuccess;
using bench::ProcessWorkload;

namespace {

bench::NoteChunks& Chunks() {
  static bench::NoteChunks chunks(ProcessWorkload().chunks, ProcessWorkload().chunkBytes, "\n");
  return chunks;
}

bool IsView(DHANDLE note) { return note >= bench::kFirstView; }

}  // namespace

STATUS LARKSPAN_NOTES_CALL NSFNoteOpen(DHANDLE, NOTEID noteId, WORD, DHANDLE* note) {
  if (ProcessWorkload().crashes != 0 && !IsView(noteId)) {
    RaiseException(EXCEPTION_ACCESS_VIOLATION, EXCEPTION_NONCONTINUABLE, 0, nullptr);
  }
  if (ProcessWorkload().wait != 0 && !IsView(noteId)) Sleep(ProcessWorkload().wait);
  *note = noteId;
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFNoteClose(DHANDLE) { return kSuccess; }

void LARKSPAN_NOTES_CALL NSFNoteGetInfo(DHANDLE note, WORD member, void* out) {
  if (member == kNoteInfoClass) {
    const WORD noteClass = IsView(note) ? 8 : 1;
    std::memcpy(out, &noteClass, sizeof noteClass);
  } else {
    const OriginatorId id{{note, note}, {note, note}, 1, {}};
    std::memcpy(out, &id, sizeof id);
  }
}

BOOL LARKSPAN_NOTES_CALL NSFNoteIsSignedOrSealed(DHANDLE, BOOL* isSigned, BOOL* isSealed) {
  *isSigned = *isSealed = FALSE;
  return FALSE;
}

WORD LARKSPAN_NOTES_CALL NSFItemGetText(DHANDLE, const char*, char* out, WORD) {
  *out = '\0';
  return 0;
}

STATUS LARKSPAN_NOTES_CALL NSFItemInfo(DHANDLE note, const char* name, WORD nameLength, BlockId*,
                                       WORD*, BlockId* value, DWORD* valueLength) {
  if (!IsView(note) || std::string_view(name, nameLength) != "$ViewFormat") return kNotHere;
  *value = {bench::kViewFormat, 0};
  *valueLength = bench::ViewFormatLength();
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFItemInfoNext(DHANDLE, BlockId, const char*, WORD, BlockId*, WORD*,
                                           BlockId*, DWORD*) {
  return kNotHere;
}

STATUS LARKSPAN_NOTES_CALL NSFItemScan(DHANDLE, ItemCallback, void*) { return kSuccess; }

STATUS LARKSPAN_NOTES_CALL NSFItemDelete(DHANDLE, const char*, WORD) { return kNotHere; }

WORD LARKSPAN_NOTES_CALL NSFItemGetTextListEntries(DHANDLE, const char*) { return 0; }

WORD LARKSPAN_NOTES_CALL NSFItemGetTextListEntry(DHANDLE, const char*, WORD, char*, WORD) {
  return 0;
}

STATUS LARKSPAN_NOTES_CALL EnumCompositeBuffer(BlockId, DWORD, RecordCallback, void*) {
  return kSuccess;
}

int LARKSPAN_NOTES_CALL IntlTextCompare(const char* text1, WORD length1, const char* text2,
                                        WORD length2, WORD) {
  return std::string_view(text1, length1).compare(std::string_view(text2, length2));
}

STATUS LARKSPAN_NOTES_CALL DXLCreateExporter(DHANDLE* exporter) {
  *exporter = bench::kExporter;
  return kSuccess;
}

void LARKSPAN_NOTES_CALL DXLDeleteExporter(DHANDLE) {}

STATUS LARKSPAN_NOTES_CALL DXLSetExporterProperty(DHANDLE, int, void*) { return kSuccess; }

STATUS LARKSPAN_NOTES_CALL DXLExportNote(DHANDLE, DxlOutputCallback output, DHANDLE note,
                                         void* context) {
  Chunks().Select(note);
  for (std::uint32_t i = 0; i < Chunks().count(); ++i) {
    const std::string_view chunk = Chunks()[i];
    output(reinterpret_cast<const BYTE*>(chunk.data()), static_cast<DWORD>(chunk.size()), context);
  }
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL DXLExportACL(DHANDLE, DxlOutputCallback output, DHANDLE, void* context) {
  constexpr std::string_view kAcl = "<?xml version='1.0' encoding='utf-8'?>\n<database/>\n";
  output(reinterpret_cast<const BYTE*>(kAcl.data()), static_cast<DWORD>(kAcl.size()), context);
  return kSuccess;
}

}  // namespace larkspan::notes_api
