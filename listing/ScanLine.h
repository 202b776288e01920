// One line of scan.txt: six fields with a tab between each two.
#pragma once

#include <string>

#include "listing/ListingFile.h"
#include "notes/NotesApi.h"

namespace larkspan {

// Writes path, title, times of the last change to data and to design, size and identifier of a
// database or folder. A field that the summary does not tell is empty. A text that does not fit
// the buffers that the library's limits promise ends the process at once, before its line.
void WriteScanLine(ListingFile& file, const notes_api::SearchMatch& match,
                   const notes_api::ItemTable& summary);

// A summary item's value as text: a text in UTF-8, a time as the hundredths of a second since day
// 1721424 began, a number as the integer with the same 64 bits. Empty when the summary has no such
// item, or one of another type.
std::string SummaryValueText(const notes_api::ItemTable& summary, const char* name);

}  // namespace larkspan
