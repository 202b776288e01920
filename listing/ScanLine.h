// One line of scan.txt: six fields with a tab between each two.
#pragma once

#include <string>

#include "listing/ListingFile.h"
#include "notes/NotesApi.h"

namespace larkspan {

// The lines of one listing, which share the room in which each is put together.
class ScanLines {
 public:
  // The file must outlive the lines.
  explicit ScanLines(ListingFile& file) : file_(file) {}

  // Writes path, title, times of the last change to data and to design, size and identifier of a
  // database or folder. A field that the summary does not tell is empty. A text that does not fit
  // the buffers that the library's limits promise ends the process at once, before its line.
  void Write(const notes_api::SearchMatch& match, const notes_api::ItemTable& summary);

 private:
  ListingFile& file_;
  std::string line_;
};

// Appends a summary item's value as text: a text in UTF-8, a time as the hundredths of a second
// since day 1721424 began, a number as the integer with the same 64 bits. Nothing when the summary
// has no such item, or one of another type.
void AppendSummaryValue(const notes_api::ItemTable& summary, const char* name, std::string& line);

}  // namespace larkspan
