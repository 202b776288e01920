// Entries of a view as the library hands them over, laid out for tests.
#pragma once

#include <vector>

#include "tests/support/ByteBuilder.h"

namespace larkspan {

// All of an entry but its summary; the index position has so many levels below the first.
inline ExactBytes EntryHead(notes_api::NOTEID noteId, unsigned int indent, unsigned int level) {
  ByteBuilder head;
  head.Dword(noteId).Dword(1).Dword(2).Dword(3).Word(4).Word(indent);
  head.Word(level).Word(0);
  for (unsigned int i = 0; i <= level; ++i) head.Dword(i + 1);
  return head.Build();
}

inline ExactBytes EntryBytes(notes_api::NOTEID noteId, unsigned int indent,
                             const std::vector<SummaryItem>& items) {
  return ByteBuilder()
      .Append(EntryHead(noteId, indent, indent))
      .Append(SummaryBytes(items))
      .Build();
}

}  // namespace larkspan
