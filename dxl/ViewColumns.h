// The columns of a view, as far as its export needs them: their constants.
#pragma once

#include <cstddef>
#include <vector>

#include "base/ByteReader.h"
#include "notes/Handles.h"

namespace larkspan {

inline constexpr char kViewFormatItem[] = "$ViewFormat";

// A value with its type word that stands in place of one of the entry's own; empty for most
// columns.
using ColumnConstant = std::vector<std::byte>;

// One constant a column, in column order.
using ViewColumns = std::vector<ColumnConstant>;

// Reads the columns of an open view note; none when the note has no view format.
ViewColumns ReadViewColumns(const Note& viewNote);

// Reads them from a view format, its type word included. A format that ends before its header does
// has no columns; columns whose descriptor or fields do not lie inside it have no constant.
ViewColumns ParseViewFormat(Bytes format);

}  // namespace larkspan
