// Checks of entries that were read from a view, by the fuzz targets that read them.
#pragma once

#include "dxl/ViewColumns.h"
#include "dxl/ViewEntries.h"

namespace larkspan::fuzz {

// All that was read of the entry lies inside the bytes, and is what they hold.
void CheckSummary(const Summary& summary, Bytes inside);

// Writes the entry, and compares the element with the entry and its columns.
void CheckWrittenEntry(const ViewEntry& entry, const ViewColumns& columns);

}  // namespace larkspan::fuzz
