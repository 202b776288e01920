// Closing of what the Notes library opened. Each function takes the handle by reference, calls the
// matching operation only when the handle is not zero, and leaves zero behind. None of them fails.
#pragma once

#include "notes/NotesApi.h"

namespace larkspan {

void ReleaseDatabase(notes_api::DHANDLE& database);
void ReleaseNote(notes_api::DHANDLE& note);
void ReleaseIdTable(notes_api::DHANDLE& table);
void ReleaseMemory(notes_api::DHANDLE& memory);
void ReleaseCollection(notes_api::HCOLLECTION& collection);

void ReleaseExporter(notes_api::DHANDLE& exporter);
void ReleaseKeyFile(notes_api::HKFC& keyFile);

}  // namespace larkspan
