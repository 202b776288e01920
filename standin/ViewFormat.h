// The format of a view, as its item $ViewFormat holds it: a header, a descriptor for each column,
// and then of each column four fields of varying length. Programs read header and descriptors
// through ODSReadMemory, which turns the layout of the file into that of memory. The two differ, as
// they may, so that a program sees when it takes one for the other. Numbers have the low byte
// first; L1 to L4 are the lengths of a column's item name, title, formula and constant.
//
//   offset         0          2       4      6      8          10       12     16
//   header, file   signature  flags   count  zero
//   header, mem.   signature  count   flags  zero   zero       zero
//   column, file   signature  L3      L4     L1     L2         width    flags
//   column, mem.   signature  width   L1     L2     L3         L4       flags  zero
//
// Words have 16 bits, the flags of a column and the zero behind them 32 bits. Stateless; any thread
// may call.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "notes/NotesApi.h"
#include "standin/Bytes.h"

namespace larkspan::standin {

inline constexpr char kViewFormatItem[] = "$ViewFormat";
inline constexpr notes_api::WORD kTypeViewFormat = 0x0700;

// Texts in the Notes character set. The constant is a value with its type word, or empty.
struct ViewColumn {
  std::string item;
  std::string title;
  std::string formula;
  Bytes constant;
};

// The item's value, type word first.
Bytes MakeViewFormat(const std::vector<ViewColumn>& columns);

// How long a structure of the kind is in the file. A strict failure for a kind that is neither
// kViewTableFormat nor kViewColumnFormat.
std::size_t FileLength(notes_api::WORD kind);

// The structure as it is in memory. Of the file's bytes there must be FileLength many.
Bytes InMemory(notes_api::WORD kind, const notes_api::BYTE* file);

}  // namespace larkspan::standin
