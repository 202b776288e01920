// Each handle is zeroed after its closing, so that a second release finds nothing to close.
#include "notes/Handles.h"

namespace larkspan {

namespace {

template <typename Handle, typename Close>
void ReleaseIfOpen(Handle& handle, Close close) {
  if (handle == Handle{}) return;
  close(handle);
  handle = Handle{};
}

}  // namespace

void ReleaseDatabase(notes_api::DHANDLE& database) {
  ReleaseIfOpen(database, notes_api::NSFDbClose);
}

void ReleaseNote(notes_api::DHANDLE& note) { ReleaseIfOpen(note, notes_api::NSFNoteClose); }

void ReleaseIdTable(notes_api::DHANDLE& table) { ReleaseIfOpen(table, notes_api::IDDestroyTable); }

void ReleaseMemory(notes_api::DHANDLE& memory) { ReleaseIfOpen(memory, notes_api::OSMemFree); }

void ReleaseCollection(notes_api::HCOLLECTION& collection) {
  ReleaseIfOpen(collection, notes_api::NIFCloseCollection);
}

void ReleaseExporter(notes_api::DHANDLE& exporter) {
  ReleaseIfOpen(exporter, notes_api::DXLDeleteExporter);
}

void ReleaseKeyFile(notes_api::HKFC& keyFile) {
  ReleaseIfOpen(keyFile, [](notes_api::HKFC& open) { notes_api::SECKFMClose(&open, 0, nullptr); });
}

}  // namespace larkspan
