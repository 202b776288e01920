#include "tests/torture/ExportRecord.h"

#include "notes/NotesApi.h"

namespace larkspan::torture {

namespace {

using notes_api::BYTE;
using notes_api::DHANDLE;
using notes_api::DWORD;
using notes_api::STATUS;

struct Recorded {
  std::map<std::string, int> calls;
  CallsByEntry withText;
};

Recorded& TheRecord() {
  static Recorded record;
  return record;
}

struct Receiver {
  notes_api::DxlOutputCallback callback;
  void* context;
  bool hasText = false;
};

extern "C" void LARKSPAN_NOTES_CALL PassOn(const BYTE* buffer, DWORD length, void* context) {
  auto& receiver = *static_cast<Receiver*>(context);
  receiver.hasText = true;
  receiver.callback(buffer, length, receiver.context);
}

template <typename Function>
STATUS Record(const char* entry, Function* original, DHANDLE exporter,
              notes_api::DxlOutputCallback callback, DHANDLE what, void* context) {
  const int call = ++TheRecord().calls[entry];
  Receiver receiver{callback, context};
  const STATUS status = original(exporter, PassOn, what, &receiver);
  if (receiver.hasText) TheRecord().withText[entry].insert(call);
  return status;
}

extern "C" STATUS LARKSPAN_NOTES_CALL RecordNote(DHANDLE exporter,
                                                 notes_api::DxlOutputCallback callback,
                                                 DHANDLE note, void* context) {
  constexpr char kEntry[] = "DXLExportNote";
  return Record(kEntry, Original(kEntry, RecordNote), exporter, callback, note, context);
}

extern "C" STATUS LARKSPAN_NOTES_CALL RecordAcl(DHANDLE exporter,
                                                notes_api::DxlOutputCallback callback,
                                                DHANDLE database, void* context) {
  constexpr char kEntry[] = "DXLExportACL";
  return Record(kEntry, Original(kEntry, RecordAcl), exporter, callback, database, context);
}

}  // namespace

ExportRecord::ExportRecord() : note_("DXLExportNote", RecordNote), acl_("DXLExportACL", RecordAcl) {
  TheRecord() = {};
}

CallsByEntry ExportRecord::CallsWithText() const { return TheRecord().withText; }

}  // namespace larkspan::torture
