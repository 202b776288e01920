// Entries of a view as the library hands them over, laid out for tests.
#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "tests/readers/ReaderTest.h"

namespace larkspan {

// A name and a value of a summary.
using SummaryItem = std::pair<std::string_view, ExactBytes>;

inline ExactBytes SummaryBytes(const std::vector<SummaryItem>& items) {
  ByteBuilder lengths;
  ByteBuilder data;
  for (const auto& [name, value] : items) {
    lengths.Word(static_cast<unsigned int>(name.size()));
    lengths.Word(static_cast<unsigned int>(value.size()));
    data.Text(name).Append(value);
  }
  const auto length = static_cast<unsigned int>(4 + lengths.size() + data.size());
  return ByteBuilder()
      .Word(length)
      .Word(static_cast<unsigned int>(items.size()))
      .Append(lengths.Build())
      .Append(data.Build())
      .Build();
}

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
