// What the entry points of the bench's library share. The library answers by the number: a handle
// is a note ID or one of these, and nothing is kept, counted or checked.
#pragma once

#include "bench/Workload.h"
#include "notes/NotesApi.h"

namespace larkspan::bench {

inline constexpr notes_api::STATUS kSuccess = 0;

// For all that the bench has no use for.
inline constexpr notes_api::STATUS kNotHere = 1;

inline constexpr notes_api::DHANDLE kDatabase = 1;
inline constexpr notes_api::DHANDLE kNoteTable = 2;
inline constexpr notes_api::DHANDLE kViewTable = 3;
inline constexpr notes_api::DHANDLE kExporter = 4;
inline constexpr notes_api::DHANDLE kEntryBuffer = 5;
inline constexpr notes_api::DHANDLE kViewFormat = 6;

// View notes have the note IDs from this one on.
inline constexpr notes_api::NOTEID kFirstView = 0x10000000;

// What OSLockObject gives for the two handles.
void* EntryBufferAddress();
void* ViewFormatAddress();
notes_api::DWORD ViewFormatLength();

// Copies a text, at most of that size, without a NUL. Returns its length.
notes_api::WORD CopyText(const char* text, std::size_t length, char* out, std::size_t size);

}  // namespace larkspan::bench
